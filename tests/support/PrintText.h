// Lets failed expectations print texts as people read them.
#pragma once

#include <ostream>

#include "Core/Log.h"
#include "Core/Text.h"

namespace halvorn {

inline void PrintTo(const Text& text, std::ostream* stream) {
  *stream << '"' << Log::escapedForLog(text).bytes() << '"';
}

}  // namespace halvorn
