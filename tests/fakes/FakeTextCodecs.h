// Codecs for ASCII, Latin-1, Mac OS Roman and the Unicode encodings; a detector
// that says what a test wrote down.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Core/MacRoman.h"
#include "Platform/text/TextCodecs.h"

namespace halvorn {

class FakeTextCodecs : public TextCodecs {
 public:
  std::optional<Text> decode(std::string_view bytes, TextEncoding encoding) const override {
    asked.push_back(encoding);
    switch (encoding) {
      case TextEncodings::ascii:
        for (const char byte : bytes) {
          if (static_cast<unsigned char>(byte) >= 0x80) return std::nullopt;
        }
        return Text(bytes);
      case TextEncodings::latin1:
        return latin1(bytes);
      case TextEncodings::macRoman:
        return Text::fromMacRoman(bytes);
      case TextEncodings::utf8:
        return withoutMark(Text::fromStrictUtf8(bytes));
      case TextEncodings::unicode:
        if (bytes.starts_with("\xFF\xFE")) return withoutMark(wide(bytes, 2, false));
        return withoutMark(wide(bytes, 2, true));
      case TextEncodings::utf16BigEndian:
      case TextEncodings::utf16LittleEndian:
        return withoutMark(wide(bytes, 2, encoding == TextEncodings::utf16BigEndian));
      case TextEncodings::utf32BigEndian:
      case TextEncodings::utf32LittleEndian:
        return withoutMark(wide(bytes, 4, encoding == TextEncodings::utf32BigEndian));
      default:
        return std::nullopt;
    }
  }

  std::optional<std::string> encode(const Text& text, TextEncoding encoding) const override {
    std::string bytes;
    for (std::size_t i = 0; i < text.length(); ++i) {
      char32_t scalar = text.at(i);
      const char16_t next = i + 1 < text.length() ? text.at(i + 1) : u' ';
      if ((scalar & 0xF800) == 0xD800) {
        if ((scalar & 0xFC00) != 0xD800 || (next & 0xFC00) != 0xDC00) return std::nullopt;
        scalar = 0x10000 + ((scalar - 0xD800) << 10) + (next - 0xDC00u);
        ++i;
      }
      if (!append(bytes, scalar, encoding)) return std::nullopt;
    }
    return bytes;
  }

  std::optional<TextEncoding> encodingForIanaName(const Text& name) const override {
    std::string lower = name.bytes();
    for (char& byte : lower) byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 0x20) : byte;
    const auto found = names.find(lower);
    return found == names.end() ? std::nullopt : std::optional(found->second);
  }
  std::vector<DetectedEncoding> detectEncodings(std::string_view) const override { return detected; }

  std::map<std::string, TextEncoding> names = {{"us-ascii", TextEncodings::ascii},
                                               {"utf-8", TextEncodings::utf8},
                                               {"iso-8859-1", TextEncodings::latin1},
                                               {"macintosh", TextEncodings::macRoman},
                                               {"utf-16", TextEncodings::unicode},
                                               {"utf-16be", TextEncodings::utf16BigEndian},
                                               {"utf-16le", TextEncodings::utf16LittleEndian},
                                               {"utf-32be", TextEncodings::utf32BigEndian},
                                               {"utf-32le", TextEncodings::utf32LittleEndian}};
  std::vector<DetectedEncoding> detected;
  mutable std::vector<TextEncoding> asked;  // what was decoded, in order

 private:
  static Text latin1(std::string_view bytes) {
    std::u16string units;
    for (const char byte : bytes) units.push_back(static_cast<unsigned char>(byte));
    return Text(std::move(units));
  }
  // UTF-16 or UTF-32; nullopt unless the units make up scalars to the end.
  static std::optional<Text> wide(std::string_view bytes, std::size_t width, bool isBigEndian) {
    if (bytes.size() % width != 0) return std::nullopt;
    std::u16string units;
    for (std::size_t i = 0; i < bytes.size(); i += width) {
      char32_t value = 0;
      for (std::size_t j = 0; j < width; ++j) {
        value = value << 8 | static_cast<unsigned char>(bytes[i + (isBigEndian ? j : width - 1 - j)]);
      }
      if (value > 0x10FFFF || (width == 4 && value >= 0xD800 && value < 0xE000)) return std::nullopt;
      if (value >= 0x10000) units.push_back(static_cast<char16_t>(0xD7C0 + (value >> 10)));
      units.push_back(static_cast<char16_t>(value < 0x10000 ? value : 0xDC00 + (value & 0x3FF)));
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
      if ((units[i] & 0xF800) != 0xD800) continue;
      const bool isPair =
          (units[i] & 0xFC00) == 0xD800 && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00;
      if (!isPair) return std::nullopt;
      ++i;
    }
    return Text(std::move(units));
  }
  static std::optional<Text> withoutMark(const std::optional<Text>& text) {
    if (!text || text->isEmpty() || text->at(0) != 0xFEFF) return text;
    return text->substring(1);
  }

  static void appendWide(std::string& bytes, char32_t value, int width, bool isBigEndian) {
    for (int i = 0; i < width; ++i) {
      bytes.push_back(static_cast<char>(value >> 8 * (isBigEndian ? width - 1 - i : i) & 0xFF));
    }
  }
  static bool append(std::string& bytes, char32_t scalar, TextEncoding encoding) {
    const bool isBigEndian =
        encoding != TextEncodings::utf16LittleEndian && encoding != TextEncodings::utf32LittleEndian;
    switch (encoding) {
      case TextEncodings::ascii:
      case TextEncodings::latin1:
        if (scalar > (encoding == TextEncodings::ascii ? 0x7Fu : 0xFFu)) return false;
        bytes.push_back(static_cast<char>(scalar));
        return true;
      case TextEncodings::macRoman: {
        const auto byte = scalar < 0x10000 ? macRomanFromUnit(static_cast<char16_t>(scalar)) : std::nullopt;
        if (byte) bytes.push_back(static_cast<char>(*byte));
        return byte.has_value();
      }
      case TextEncodings::utf8:
        bytes += Text::fromScalar(scalar).bytes();
        return true;
      case TextEncodings::unicode:
      case TextEncodings::utf16BigEndian:
      case TextEncodings::utf16LittleEndian: {
        const Text units = Text::fromScalar(scalar);
        for (const char16_t unit : units.units()) appendWide(bytes, unit, 2, isBigEndian);
        return true;
      }
      case TextEncodings::utf32BigEndian:
      case TextEncodings::utf32LittleEndian:
        appendWide(bytes, scalar, 4, isBigEndian);
        return true;
      default:
        return false;
    }
  }
};

}  // namespace halvorn
