// How a failed test shows a text: in quotes, on one line, nothing of it invisible.
#pragma once

#include <ostream>

#include "Core/Log.h"
#include "Core/MutableText.h"
#include "Core/Text.h"

namespace halvorn {

inline void PrintTo(const Text& text, std::ostream* out) {
  *out << '"' << Log::escapedForLog(text).bytes() << '"';
}
inline void PrintTo(const MutableText& text, std::ostream* out) { PrintTo(text.text(), out); }

}  // namespace halvorn
