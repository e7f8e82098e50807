// Small pictures for tests: a PNG of one color, an icns file of several.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace halvorn {

namespace png_data {

inline std::string number(std::uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
          static_cast<char>(value)};
}

inline std::uint32_t checksum(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  return ~crc;
}

inline std::string chunk(const std::string& type, const std::string& content) {
  return number(static_cast<std::uint32_t>(content.size())) + type + content +
         number(checksum(type + content));
}

// Stored without compression, in blocks of at most 65535 bytes.
inline std::string zlibStored(const std::string& bytes) {
  std::string result = "\x78\x01";
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (const char byte : bytes) {
    a = (a + static_cast<unsigned char>(byte)) % 65521;
    b = (b + a) % 65521;
  }
  for (std::size_t start = 0; start < bytes.size(); start += 65535) {
    const std::string block = bytes.substr(start, 65535);
    const auto size = static_cast<std::uint16_t>(block.size());
    const auto inverse = static_cast<std::uint16_t>(~size);
    result.push_back(start + 65535 >= bytes.size() ? '\1' : '\0');
    for (const std::uint16_t part : {size, inverse}) {
      result.push_back(static_cast<char>(part & 0xFF));
      result.push_back(static_cast<char>(part >> 8));
    }
    result += block;
  }
  return result + number(b << 16 | a);
}

}  // namespace png_data

// Opaque, 8 bits a channel.
inline std::string pngOf(int width, int height, std::array<unsigned char, 3> color = {200, 60, 60}) {
  using namespace png_data;
  std::string rows;
  for (int y = 0; y < height; ++y) {
    rows.push_back('\0');
    for (int x = 0; x < width; ++x) {
      for (const unsigned char channel : color) rows.push_back(static_cast<char>(channel));
    }
  }
  const std::string header = number(static_cast<std::uint32_t>(width)) +
                             number(static_cast<std::uint32_t>(height)) + std::string("\x08\x02\0\0\0", 5);
  return "\x89PNG\r\n\x1A\n" + chunk("IHDR", header) + chunk("IDAT", zlibStored(rows)) + chunk("IEND", "");
}

// Entries of a type ("ic07") and its content.
inline std::string icnsOf(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string content;
  for (const auto& [type, bytes] : entries) {
    content += type + png_data::number(static_cast<std::uint32_t>(bytes.size() + 8)) + bytes;
  }
  return "icns" + png_data::number(static_cast<std::uint32_t>(content.size() + 8)) + content;
}

}  // namespace halvorn
