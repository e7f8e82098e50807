// Creator signatures of programs on a system that knows none.
// Why: docs/decisions/013-who-is-quit-and-how.md
#pragma once

#include "Core/FourCharCode.h"
#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

// The code that a bundle's information dictionary declares, when it declares one that can be written as text.
// Everything else, "????" too, is no declaration and gets the derived code of the identity.
[[nodiscard]] FourCharCode signatureFrom(const PropertyDictionary& information, const Text& identity);

// The same code for the same identity every time, with a control character in front: no text converts to it,
// so no list of codes can name a program that declares none.
[[nodiscard]] FourCharCode derivedSignature(const Text& identity);

}  // namespace halvorn
