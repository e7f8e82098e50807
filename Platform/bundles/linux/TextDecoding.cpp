#include "Platform/bundles/linux/TextDecoding.h"

#include <string>
#include <utility>

namespace halvorn {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

enum class ByteOrder { Little, Big };

bool hasMark(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

// Both formats read here begin with an ASCII character.
ByteOrder byteOrder(std::string_view bytes) {
  if (hasMark(bytes)) return bytes.front() == '\xFF' ? ByteOrder::Little : ByteOrder::Big;
  return bytes.front() == '\0' ? ByteOrder::Big : ByteOrder::Little;
}

std::optional<Text> fromUtf16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  const bool isLittle = byteOrder(bytes) == ByteOrder::Little;
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t i = hasMark(bytes) ? 2 : 0; i < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    units.push_back(static_cast<char16_t>(isLittle ? first | second << 8 : first << 8 | second));
  }
  return Text(std::move(units));
}

}  // namespace

bool looksLikeUtf16(std::string_view bytes) {
  if (bytes.size() < 2) return false;
  return hasMark(bytes) || (bytes[0] == '\0') != (bytes[1] == '\0');
}

std::optional<Text> decodeText(std::string_view bytes) {
  if (looksLikeUtf16(bytes)) return fromUtf16(bytes);
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  if (auto text = Text::fromStrictUtf8(bytes)) return text;
  std::u16string units;
  units.reserve(bytes.size());
  for (const char byte : bytes) units.push_back(static_cast<unsigned char>(byte));
  return Text(std::move(units));
}

}  // namespace halvorn
