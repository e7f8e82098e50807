// A value of a property list: information dictionaries, user defaults, notification user info.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Core/Date.h"
#include "Core/Text.h"

namespace halvorn {

class PropertyValue;
using PropertyArray = std::vector<PropertyValue>;          // in its order
using PropertyDictionary = std::map<Text, PropertyValue>;  // in the order of the keys

struct PropertyData {  // bytes that mean something to whoever put them there
  std::string bytes;   // any, zeros too
  friend bool operator==(const PropertyData&, const PropertyData&) = default;
};

class PropertyValue {
 public:
  PropertyValue(Text value) : value_(std::move(value)) {}                 // a text
  PropertyValue(const char* value) : value_(Text(value)) {}               // a text in UTF-8
  PropertyValue(bool value) : value_(value) {}                            // yes or no
  PropertyValue(std::int64_t value) : value_(value) {}                    // an integer
  PropertyValue(int value) : value_(static_cast<std::int64_t>(value)) {}  // an integer
  PropertyValue(double value) : value_(value) {}                          // a real
  PropertyValue(Date value) : value_(value) {}                            // a moment
  PropertyValue(PropertyData value) : value_(std::move(value)) {}         // bytes
  PropertyValue(PropertyArray value) : value_(std::move(value)) {}        // an array
  PropertyValue(PropertyDictionary value) : value_(std::move(value)) {}   // a dictionary

  // The value when it is of that kind, else null. No conversions.
  [[nodiscard]] const Text* text() const { return std::get_if<Text>(&value_); }
  [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&value_); }
  [[nodiscard]] const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
  [[nodiscard]] const double* real() const { return std::get_if<double>(&value_); }
  [[nodiscard]] const Date* date() const { return std::get_if<Date>(&value_); }
  [[nodiscard]] const PropertyData* data() const { return std::get_if<PropertyData>(&value_); }
  [[nodiscard]] const PropertyArray* array() const { return std::get_if<PropertyArray>(&value_); }
  [[nodiscard]] const PropertyDictionary* dictionary() const {
    return std::get_if<PropertyDictionary>(&value_);
  }

  // Truth as lists written by hand mean it: true, a number that is not 0, or a text that begins (after
  // blanks) with Y, y, T, t or a digit 1 to 9, zeros and a sign before it skipped.
  [[nodiscard]] bool isTrue() const;

  // One line for logs: "text", 12, 2.5, YES, NO, ("a", "b"), {"key" = "value"; }, <4 bytes>, a date as
  // seconds. A text that stands alone has no quotes.
  [[nodiscard]] Text description() const;

  friend bool operator==(const PropertyValue&, const PropertyValue&) = default;

 private:
  std::variant<Text, bool, std::int64_t, double, Date, PropertyData, PropertyArray, PropertyDictionary>
      value_;
};

// The text under the key; nullopt when it is missing or no text.
[[nodiscard]] OptionalText textForKey(const PropertyDictionary& dictionary, const Text& key);

// As PropertyValue::description(), for a bare array or dictionary.
[[nodiscard]] Text describe(const PropertyArray& array);
[[nodiscard]] Text describe(const PropertyDictionary& dictionary);
[[nodiscard]] Text describe(const std::vector<Text>& texts);

}  // namespace halvorn
