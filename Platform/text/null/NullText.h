// Texts without tables: ASCII is known, and nothing is converted, searched or typed.
#pragma once

#include <string>

#include "Platform/text/Digests.h"
#include "Platform/text/FourCharCodes.h"
#include "Platform/text/HtmlText.h"
#include "Platform/text/Keyboard.h"
#include "Platform/text/LocalizedDates.h"
#include "Platform/text/LocalizedSizes.h"
#include "Platform/text/Regex.h"
#include "Platform/text/TextCodecs.h"
#include "Platform/text/Unicode.h"

namespace halvorn {

// Dates cannot be shown.
class NullLocalizedDates : public LocalizedDates {
 public:
  OptionalText shortDate(Date) const override { return std::nullopt; }
};

// Amounts are numbers of bytes.
class NullLocalizedSizes : public LocalizedSizes {
 public:
  Part partOf(std::uint64_t bytes, std::uint64_t whole) const override {
    return {number(bytes), number(whole)};
  }
  Text number(std::uint64_t number) const override { return Text(std::to_string(number)); }
};

// ASCII is known; of every other character nothing is.
class NullUnicode : public Unicode {
 public:
  bool isLetter(char32_t scalar) const override;
  bool isAlphanumeric(char32_t scalar) const override;
  bool isControl(char32_t scalar) const override;
  bool isWhiteSpace(char32_t scalar) const override;
  bool isUnassigned(char32_t) const override { return false; }
  Text caseFolded(const Text& text) const override;
  Text decomposed(const Text& text) const override { return text; }
  Ordering compareCaseInsensitive(const Text& a, const Text& b) const override;
};

// No encoding is known.
class NullTextCodecs : public TextCodecs {
 public:
  std::optional<Text> decode(std::string_view, TextEncoding) const override { return std::nullopt; }
  std::optional<std::string> encode(const Text&, TextEncoding) const override { return std::nullopt; }
  std::optional<TextEncoding> encodingForIanaName(const Text&) const override { return std::nullopt; }
  std::vector<DetectedEncoding> detectEncodings(std::string_view) const override { return {}; }
};

// No pattern is an expression.
class NullRegex : public Regex {
 public:
  RegexCompilation compile(const Text&, RegexOptions) const override {
    return {nullptr, "this system has no expressions"};
  }
};

// No page can be read.
class NullHtmlText : public HtmlText {
 public:
  HtmlAnswer read(const Text&, HtmlVisitor&) const override { return HtmlAnswer::Failed; }
};

// No text is a code.
class NullFourCharCodes : public FourCharCodes {
 public:
  FourCharCode codeOf(const Text&) const override { return 0; }
  Text textOf(FourCharCode) const override { return {}; }
};

// No digest is known.
class NullDigests : public Digests {
 public:
  std::optional<Md5Digest> md5(std::string_view) const override { return std::nullopt; }
};

// A keyboard without a layout.
class NullKeyboard : public Keyboard {
 public:
  std::uint32_t type() const override { return KeyboardTypes::ansi; }
  OptionalText translate(std::uint16_t, KeyModifiers, std::uint8_t) const override { return std::nullopt; }
};

}  // namespace halvorn
