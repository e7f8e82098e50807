// Text: an immutable run of UTF-16 code units, all or a part of a shared buffer.
//
// A copy is the same object: `Text b = a;` costs a reference count and `a.isSameObject(b)` holds, so a
// function that "returns the receiver itself" simply returns its argument. `==` compares content.
//
// A part shares the buffer of its text where that is small or the part is a good share of it; else it is
// copied. So no text keeps more in memory than eight times itself, or a page of kPage units.
//
// Any bytes can become a Text and come back unchanged. Bytes that are not UTF-8 are kept as
// lone low surrogates, byte 0xNN as U+DCNN; bytes() turns those into the bytes they were. So
// every path that exists can be named.
//
// Thread: values are immutable; copies may be used on any thread.
// Why: docs/decisions/001-text-keeps-every-byte.md
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvorn {

class Text {
 public:
  // The empty text. All empty texts are the same object.
  Text() = default;
  // From UTF-8; invalid bytes are kept, see above. Implicit, so that literals read as texts.
  Text(const char* utf8);
  Text(std::string_view utf8);
  Text(const std::string& utf8);
  explicit Text(std::u16string units);  // any units
  // Copies only: a text that was moved from would be another one.
  Text(const Text&) = default;
  Text& operator=(const Text&) = default;

  // From UTF-8 that must be valid (no surrogates, no overlong forms); nullopt otherwise.
  [[nodiscard]] static std::optional<Text> fromStrictUtf8(std::string_view bytes);
  // From bytes in the Mac OS Roman encoding; every byte stands for one character.
  [[nodiscard]] static Text fromMacRoman(std::string_view bytes);
  // One Unicode scalar value; a surrogate value gives that lone unit.
  [[nodiscard]] static Text fromScalar(char32_t scalar);

  [[nodiscard]] std::size_t length() const { return units_.size(); }            // in UTF-16 units
  [[nodiscard]] bool isEmpty() const { return units_.empty(); }                 // has no unit
  [[nodiscard]] char16_t at(std::size_t index) const { return units_[index]; }  // index < length()
  // Lives as long as any copy of this text. Nothing ends it: the unit behind it may be anything.
  [[nodiscard]] std::u16string_view units() const { return units_; }
  // UTF-8; lone U+DC80..U+DCFF become the bytes they were made of, other lone
  // surrogates their three-byte form.
  [[nodiscard]] std::string bytes() const;

  [[nodiscard]] bool isSameObject(const Text& other) const;  // the same part of the same buffer

  // Positions and lengths are clamped to the text. A range that is the whole text gives the same object.
  // Many pieces of one long text: TextPieces.
  [[nodiscard]] Text substring(std::size_t start, std::size_t count = npos) const;
  // An empty prefix or suffix matches nothing, not even the empty text.
  [[nodiscard]] bool hasPrefix(const Text& prefix) const;
  [[nodiscard]] bool hasSuffix(const Text& suffix) const;
  [[nodiscard]] bool contains(const Text& part) const;  // anywhere
  // Unit for unit; npos when absent.
  [[nodiscard]] std::size_t find(const Text& part, std::size_t start = 0) const;
  [[nodiscard]] std::size_t find(char16_t unit, std::size_t start = 0) const;
  [[nodiscard]] std::vector<Text> split(char16_t separator) const;         // "" gives one empty text
  [[nodiscard]] Text replacing(const Text& part, const Text& with) const;  // everywhere, from left to right

  // The number at the start: blanks skipped, sign, digits; 0 when there is none, clamped to the type's range.
  [[nodiscard]] std::int32_t intValue() const;
  // The decimal number at the start ("2.5 s" is 2.5, "1e3" is 1000), blanks skipped; 0 when there is none.
  // What is too large for the type is infinite.
  [[nodiscard]] float floatValue() const;
  [[nodiscard]] double doubleValue() const;

  // Strips blanks, tabs and line ends (U+0009..U+000D, U+0020, U+0085, U+00A0, U+1680, U+2000..U+200B,
  // U+2028, U+2029, U+202F, U+205F, U+3000) at both ends.
  [[nodiscard]] Text trimmed() const;

  friend bool operator==(const Text& a, const Text& b);  // unit for unit
  // Order of the UTF-16 units; not meant for people.
  friend std::strong_ordering operator<=>(const Text& a, const Text& b);
  friend Text operator+(const Text& a, const Text& b);  // the second behind the first

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);  // nowhere
  // A buffer of at most that many units is kept by the smallest part of it.
  static constexpr std::size_t kPage = 2048;

 private:
  friend class TextPieces;

  // A part of the text on its own buffer, whatever the buffer's size. The range lies in the text.
  [[nodiscard]] Text sharedPart(std::size_t start, std::size_t count) const {
    Text part;
    if (count == 0) return part;
    part.buffer_ = buffer_;
    part.units_ = std::u16string_view(units_.data() + start, count);
    return part;
  }

  static constexpr char16_t kNothing[1] = {};

  std::shared_ptr<const std::u16string> buffer_;  // null when the text is empty
  std::u16string_view units_ = kNothing;          // the part of the buffer that this text is
};

using OptionalText = std::optional<Text>;  // nullopt is no text, which "" is

// Joins the parts with the separator between them.
[[nodiscard]] Text join(const std::vector<Text>& parts, const Text& separator);

}  // namespace halvorn

// Of the content, for containers.
template <>
struct std::hash<halvorn::Text> {
  // Equal for equal texts.
  std::size_t operator()(const halvorn::Text& text) const noexcept {
    return std::hash<std::u16string_view>{}(text.units());
  }
};
