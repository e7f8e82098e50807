#include "Core/PropertyValue.h"

#include "Core/RealPrinting.h"

namespace halvorn {
namespace {

Text quoted(const Text& text) { return Text("\"") + text + Text("\""); }

constexpr int kSignificantDigits = 12;

bool isTrueText(const Text& text) {
  const Text trimmed = text.trimmed();
  std::size_t i = 0;
  if (i < trimmed.length() && (trimmed.at(i) == u'+' || trimmed.at(i) == u'-')) ++i;
  while (i < trimmed.length() && trimmed.at(i) == u'0') ++i;
  if (i >= trimmed.length()) return false;
  const char16_t unit = trimmed.at(i);
  return unit == u'Y' || unit == u'y' || unit == u'T' || unit == u't' || (unit >= u'1' && unit <= u'9');
}

Text nestedDescription(const PropertyValue& value) {
  return value.text() ? quoted(*value.text()) : value.description();
}

}  // namespace

bool PropertyValue::isTrue() const {
  if (const bool* flag = boolean()) return *flag;
  if (const auto* number = integer()) return *number != 0;
  if (const double* number = real()) return *number != 0.0;
  if (const Text* words = text()) return isTrueText(*words);
  return false;
}

Text PropertyValue::description() const {
  if (const Text* words = text()) return *words;
  if (const bool* flag = boolean()) return *flag ? "YES" : "NO";
  if (const auto* number = integer()) return std::to_string(*number);
  if (const double* number = real()) return printedBriefly(*number, kSignificantDigits);
  if (const Date* moment = date()) return printedBriefly(moment->secondsSince1970, kSignificantDigits);
  if (const PropertyData* bytes = data()) {
    const std::string size = std::to_string(bytes->bytes.size());
    return "<" + size + " bytes>";
  }
  if (const PropertyArray* values = array()) return describe(*values);
  return describe(*dictionary());
}

OptionalText textForKey(const PropertyDictionary& dictionary, const Text& key) {
  const auto found = dictionary.find(key);
  if (found == dictionary.end() || !found->second.text()) return std::nullopt;
  return *found->second.text();
}

Text describe(const PropertyArray& array) {
  std::vector<Text> parts;
  for (const PropertyValue& value : array) parts.push_back(nestedDescription(value));
  return Text("(") + join(parts, ", ") + Text(")");
}

Text describe(const PropertyDictionary& dictionary) {
  std::vector<Text> parts;
  for (const auto& [key, value] : dictionary) {
    parts.push_back(quoted(key) + Text(" = ") + nestedDescription(value) + Text("; "));
  }
  return Text("{") + join(parts, "") + Text("}");
}

Text describe(const std::vector<Text>& texts) { return describe(PropertyArray(texts.begin(), texts.end())); }

}  // namespace halvorn
