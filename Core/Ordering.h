// The answer of a comparison.
#pragma once

namespace halvorn {

enum class Ordering { Ascending = -1, Same = 0, Descending = 1 };  // of the first of two things

}  // namespace halvorn
