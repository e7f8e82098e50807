// User defaults in memory.
#pragma once

#include <map>
#include <optional>

#include "Platform/bundles/Defaults.h"

namespace halvorn {

class FakeDefaults : public Defaults {
 public:
  std::optional<PropertyValue> objectForKey(const Text& key) const override { return find(values, key); }
  std::optional<PropertyValue> objectForKey(const Text& key, const Text& domain) const override {
    const auto found = domains.find(domain);
    return found == domains.end() ? std::nullopt : find(found->second, key);
  }

  PropertyDictionary values;
  std::map<Text, PropertyDictionary> domains;  // of other programs

 private:
  static std::optional<PropertyValue> find(const PropertyDictionary& in, const Text& key) {
    const auto found = in.find(key);
    return found == in.end() ? std::nullopt : std::optional<PropertyValue>(found->second);
  }
};

}  // namespace halvorn
