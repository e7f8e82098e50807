#include "Core/KeyedArchive.h"

namespace halvorn {

namespace {

constexpr char kClassKey[] = "$class";
constexpr char kNull[] = "$null";
constexpr int kDeepest = 16;

std::optional<double> realOf(const PropertyValue& value) {
  if (const double* real = value.real()) return *real;
  // Property lists written by others have whole numbers where a real one is whole.
  if (const std::int64_t* integer = value.integer()) return static_cast<double>(*integer);
  return std::nullopt;
}

}  // namespace

void KeyedEncoder::encodeReals(const std::vector<double>& reals, const Text& key) {
  values_.insert_or_assign(key, PropertyArray(reals.begin(), reals.end()));
}

void KeyedEncoder::encodeObject(const Archivable* object, const Text& key) {
  values_.insert_or_assign(key,
                           object != nullptr ? PropertyValue(archivedObject(*object)) : PropertyValue(kNull));
}

PropertyDictionary archivedObject(const Archivable& object) {
  KeyedEncoder encoder;
  object.encodeWithCoder(encoder);
  encoder.encodeText(object.archivedClass(), kClassKey);
  return encoder.values();
}

OptionalText KeyedDecoder::decodeText(const Text& key) const { return textForKey(archive_, key); }

std::optional<double> KeyedDecoder::decodeReal(const Text& key) const {
  const auto found = archive_.find(key);
  return found == archive_.end() ? std::nullopt : realOf(found->second);
}

std::optional<std::vector<double>> KeyedDecoder::decodeReals(const Text& key) const {
  const auto found = archive_.find(key);
  if (found == archive_.end() || found->second.array() == nullptr) return std::nullopt;
  std::vector<double> reals;
  for (const PropertyValue& value : *found->second.array()) {
    const auto real = realOf(value);
    if (!real) return std::nullopt;
    reals.push_back(*real);
  }
  return reals;
}

KeyedDecoder::ObjectPointer KeyedDecoder::decodeObject(const Text& key) const {
  const auto found = archive_.find(key);
  if (found == archive_.end() || depth_ >= kDeepest) return nullptr;
  const PropertyDictionary* dictionary = found->second.dictionary();
  return dictionary != nullptr ? KeyedDecoder(*dictionary, classes_, depth_ + 1).decode() : nullptr;
}

KeyedDecoder::ObjectPointer KeyedDecoder::decode() const {
  const OptionalText name = decodeText(kClassKey);
  const auto found = name ? classes_.find(*name) : classes_.end();
  return found != classes_.end() ? found->second(*this) : nullptr;
}

}  // namespace halvorn
