#include "Platform/running/mac/Conversions.h"

#include <cstring>

namespace halvorn {
namespace {

// Property lists are trees of a few levels; what is deeper was made to be deep.
constexpr int kDeepest = 100;

std::optional<PropertyValue> valueOf(id object, int depth);

// Foundation keeps truth values as numbers of one class of their own or, for want of it, of the type char.
bool isBoolean(NSNumber* number) {
  return [number isKindOfClass:[[NSNumber numberWithBool:YES] class]] &&
         (std::strcmp([number objCType], @encode(BOOL)) == 0 || std::strcmp([number objCType], "c") == 0);
}

PropertyValue valueOfNumber(NSNumber* number) {
  if (isBoolean(number)) return static_cast<bool>([number boolValue]);
  const char* const type = [number objCType];
  const bool isReal = std::strcmp(type, "d") == 0 || std::strcmp(type, "f") == 0;
  if (isReal) return [number doubleValue];
  return static_cast<std::int64_t>([number longLongValue]);
}

std::optional<PropertyValue> valueOfArray(NSArray* array, int depth) {
  PropertyArray values;
  for (NSUInteger i = 0; i < [array count]; ++i) {
    auto value = valueOf([array objectAtIndex:i], depth);
    if (!value) return std::nullopt;
    values.push_back(std::move(*value));
  }
  return PropertyValue(std::move(values));
}

std::optional<PropertyDictionary> valuesOfDictionary(NSDictionary* dictionary, int depth) {
  PropertyDictionary values;
  NSArray* const keys = [dictionary allKeys];
  for (NSUInteger i = 0; i < [keys count]; ++i) {
    const id key = [keys objectAtIndex:i];
    auto value = valueOf([dictionary objectForKey:key], depth);
    if (!value || ![key isKindOfClass:[NSString class]]) return std::nullopt;
    values.insert_or_assign(*textOf(key), std::move(*value));
  }
  return values;
}

std::optional<PropertyValue> valueOf(id object, int depth) {
  if (depth > kDeepest) return std::nullopt;
  if ([object isKindOfClass:[NSString class]]) return PropertyValue(*textOf(object));
  if ([object isKindOfClass:[NSNumber class]]) return valueOfNumber(object);
  if ([object isKindOfClass:[NSDate class]]) return PropertyValue(dateOf(object));
  if ([object isKindOfClass:[NSData class]]) return PropertyValue(PropertyData{bytesOf(object)});
  if ([object isKindOfClass:[NSArray class]]) return valueOfArray(object, depth + 1);
  if (![object isKindOfClass:[NSDictionary class]]) return std::nullopt;
  auto values = valuesOfDictionary(object, depth + 1);
  return values ? std::optional<PropertyValue>(std::move(*values)) : std::nullopt;
}

NSString* stringOfUnits(std::u16string_view units) {
  return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data()) length:units.size()];
}

bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }
bool isPair(char16_t first, char16_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

std::u16string withoutLoneSurrogates(std::u16string_view units) {
  std::u16string result(units);
  for (std::size_t i = 0; i < result.size(); ++i) {
    if (i + 1 < result.size() && isPair(result[i], result[i + 1])) {
      ++i;
    } else if (isSurrogate(result[i])) {
      result[i] = u'\uFFFD';
    }
  }
  return result;
}

}  // namespace

NSString* stringOf(const Text& text) {
  NSString* const string = stringOfUnits(text.units());
  return string != nil ? string : stringOfUnits(withoutLoneSurrogates(text.units()));
}

OptionalText textOf(NSString* string) {
  if (string == nil) return std::nullopt;
  std::u16string units([string length], u'\0');
  [string getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
  return Text(std::move(units));
}

NSArray* arrayOf(const std::vector<Text>& texts) {
  NSMutableArray* const array = [NSMutableArray arrayWithCapacity:texts.size()];
  for (const Text& text : texts) [array addObject:stringOf(text)];
  return array;
}

NSData* dataOf(std::string_view bytes) { return [NSData dataWithBytes:bytes.data() length:bytes.size()]; }

std::string bytesOf(NSData* data) {
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

Date dateOf(NSDate* date) { return Date{[date timeIntervalSince1970]}; }

std::optional<PropertyValue> valueOf(id object) { return valueOf(object, 0); }

std::optional<PropertyDictionary> dictionaryOf(NSDictionary* dictionary) {
  return dictionary != nil ? valuesOfDictionary(dictionary, 0) : std::nullopt;
}

}  // namespace halvorn
