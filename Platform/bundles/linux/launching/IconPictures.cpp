#include "Platform/bundles/linux/launching/IconPictures.h"

#include <cstdint>

namespace halvorn {
namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t kLargestSize = 1024;
constexpr std::size_t kLargestPicture = 4UL * 1024 * 1024;

// Big-endian. The range is the caller's to check.
std::uint32_t numberAt(std::string_view bytes, std::size_t position) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[position + i]);
  return number;
}

// The length of a PNG that begins here, its end chunk included; 0 when it is broken.
std::size_t lengthOfPng(std::string_view bytes) {
  std::size_t position = 8;
  while (bytes.size() - position >= 12) {
    const std::uint32_t size = numberAt(bytes, position);
    if (size > bytes.size() - position - 12) return 0;
    const bool isEnd = bytes.substr(position + 4, 4) == "IEND";
    position += 12 + size;
    if (isEnd) return position;
  }
  return 0;
}

}  // namespace

std::optional<int> sizeOfSquarePng(std::string_view bytes) {
  if (bytes.size() < 33 || !bytes.starts_with("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"sv)) return std::nullopt;
  const std::uint32_t width = numberAt(bytes, 16);
  if (width != numberAt(bytes, 20) || width == 0 || width > kLargestSize) return std::nullopt;
  if (lengthOfPng(bytes) != bytes.size() || bytes.size() > kLargestPicture) return std::nullopt;
  return static_cast<int>(width);
}

std::vector<IconPicture> picturesInIcon(std::string_view bytes) {
  std::vector<IconPicture> pictures;
  if (const auto size = sizeOfSquarePng(bytes)) {
    pictures.push_back({*size, std::string(bytes)});
    return pictures;
  }
  if (!bytes.starts_with("icns")) return pictures;
  // Entries of a four-byte name and a length that counts these eight bytes.
  std::size_t position = 8;
  while (bytes.size() > position && bytes.size() - position >= 8) {
    const std::uint32_t length = numberAt(bytes, position + 4);
    if (length < 8 || length > bytes.size() - position) break;
    const std::string_view content = bytes.substr(position + 8, length - 8);
    if (const auto size = sizeOfSquarePng(content)) pictures.push_back({*size, std::string(content)});
    position += length;
  }
  return pictures;
}

}  // namespace halvorn
