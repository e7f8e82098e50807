#include "Sources/ArgumentDictionary.h"

#include "Core/PropertyValue.h"

namespace halvorn {

OptionalText ArgumentDictionary::text(const Text& key) const {
  const auto found = entries_.find(key);
  if (found == entries_.end()) return std::nullopt;
  const Text* value = std::get_if<Text>(&found->second);
  return value ? OptionalText(*value) : std::nullopt;
}

const std::vector<Text>* ArgumentDictionary::list(const Text& key) const {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : std::get_if<std::vector<Text>>(&found->second);
}

bool ArgumentDictionary::has(const Text& key) const { return entries_.contains(key); }

void ArgumentDictionary::set(const Text& key, const Text& value) { entries_.insert_or_assign(key, value); }

void ArgumentDictionary::set(const Text& key, std::vector<Text> values) {
  entries_.insert_or_assign(key, std::move(values));
}

void ArgumentDictionary::append(const Text& key, const Text& value) {
  auto& entry = entries_.try_emplace(key, std::vector<Text>()).first->second;
  if (auto* values = std::get_if<std::vector<Text>>(&entry)) values->push_back(value);
}

void ArgumentDictionary::remove(const Text& key) { entries_.erase(key); }

Text ArgumentDictionary::description() const {
  PropertyDictionary dictionary;
  for (const auto& [key, value] : entries_) {
    if (const Text* single = std::get_if<Text>(&value)) {
      dictionary.emplace(key, *single);
    } else {
      const auto& values = std::get<std::vector<Text>>(value);
      dictionary.emplace(key, PropertyArray(values.begin(), values.end()));
    }
  }
  return describe(dictionary);
}

}  // namespace halvorn
