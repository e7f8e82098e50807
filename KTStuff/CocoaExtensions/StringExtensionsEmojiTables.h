// The sequences that virtual characters stand for. Zeros follow the scalars of each row.
#pragma once

#include <array>
#include <cstddef>

namespace halvorn {

constexpr std::size_t N_ZWJ_SEQUENCES = 154;    // rows of the first table
constexpr std::size_t N_KEYCAP_SEQUENCES = 12;  // rows of the second

// Up to eight scalars, joined by U+200D.
using ZWJSequence = std::array<char32_t, 9>;
extern const std::array<ZWJSequence, N_ZWJ_SEQUENCES> ZWJ_SEQUENCES;

// A key, then U+20E3.
using KeycapSequence = std::array<char32_t, 3>;
extern const std::array<KeycapSequence, N_KEYCAP_SEQUENCES> KEYCAP_SEQUENCES;

}  // namespace halvorn
