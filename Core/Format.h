// Format: fills the placeholders of a format text.
//
//   %@        a text ("(null)" for an absent one); %1$@ and so on name the argument
//   %d %i %u  an integer;  %X %x  hexadecimal;  %f  a real;  %s  bytes;  %%  a percent sign
//   flags, width and precision of numbers as in C: %02X, %1.3f; the point is a point in every locale
//
//   format("%1$@ %2$@ cannot be installed", name, version)
//
// Formats come from translations too, so none can do harm: a placeholder without an argument, or with one of
// another kind, or one not listed above, stands in the result as it is written.
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class FormatArgument {  // what stands for a placeholder: made of whatever is handed over
 public:
  FormatArgument(const Text& value) : value_(value) {}               // for %@
  FormatArgument(const char* value) : value_(Text(value)) {}         // UTF-8, for %@ and %s
  FormatArgument(const std::string& value) : value_(Text(value)) {}  // likewise
  FormatArgument(const OptionalText& value) : value_(value ? *value : Text("(null)")) {}  // may be none
  FormatArgument(std::nullopt_t) : value_(Text("(null)")) {}                              // shows as "(null)"
  FormatArgument(const PropertyValue& value) : value_(value.description()) {}  // as its description()
  FormatArgument(double value) : value_(value) {}                              // for %f
  FormatArgument(float value) : value_(static_cast<double>(value)) {}          // likewise
  template <std::integral Integer>
  FormatArgument(Integer value) : value_(static_cast<std::int64_t>(value)) {}  // for %d, %i, %u, %X

  [[nodiscard]] const Text* text() const { return std::get_if<Text>(&value_); }  // null for a number
  [[nodiscard]] const std::int64_t* integer() const {
    return std::get_if<std::int64_t>(&value_);
  }                                                                                  // likewise
  [[nodiscard]] const double* real() const { return std::get_if<double>(&value_); }  // null for what is none

 private:
  std::variant<Text, std::int64_t, double> value_;
};

// The format with the arguments in its places, in their order or by their numbers.
[[nodiscard]] Text formatWithArguments(const Text& format, const std::vector<FormatArgument>& arguments);
template <typename... Arguments>
[[nodiscard]] Text format(const Text& text, const Arguments&... arguments) {
  return formatWithArguments(text, {FormatArgument(arguments)...});
}

}  // namespace halvorn
