// The last 32 bytes of a single file: how long the payload before them is, packed and unpacked, in eight bytes each with the
// lowest first, and 16 bytes that say so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace halvorn {

inline constexpr std::size_t kTrailerSize = 32;

struct PayloadSizes {
  std::uint64_t packed = 0;  // 0: these bytes are no trailer
  std::uint64_t unpacked = 0;
};

inline std::string payloadTrailer(PayloadSizes sizes) {
  std::string trailer;
  for (const std::uint64_t number : {sizes.packed, sizes.unpacked}) {
    for (unsigned shift = 0; shift < 64; shift += 8) trailer += static_cast<char>(number >> shift & 0xffU);
  }
  return trailer + std::string("HalvornPayload1\0", 16);
}

inline PayloadSizes sizesInTrailer(const std::string& trailer) {
  const auto number = [&trailer](std::size_t place) {
    std::uint64_t all = 0;
    for (std::size_t byte = place + 8; byte-- > place;)
      all = all << 8U | static_cast<unsigned char>(trailer[byte]);
    return all;
  };
  if (trailer.size() != kTrailerSize) return {};
  const PayloadSizes sizes{.packed = number(0), .unpacked = number(8)};
  return payloadTrailer(sizes) == trailer ? sizes : PayloadSizes{};
}

}  // namespace halvorn
