// Items on disk as a test describes them.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "Platform/bundles/ItemFacts.h"

namespace halvorn {

class FakeItemFacts : public ItemFacts {
 public:
  std::optional<ApplicationItemFlags> flags(const Text& path) const override {
    const auto found = items.find(path);
    return found == items.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<std::string> resource(const Text& path, FourCharCode type, std::int16_t id) const override {
    const auto found = resources.find({path, type, id});
    return found == resources.end() ? std::nullopt : std::optional(found->second);
  }

  OptionalText aliasTarget(const Text& path) const override {
    const auto found = aliasTargets.find(path);
    return found == aliasTargets.end() ? std::nullopt : OptionalText(found->second);
  }

  std::map<Text, ApplicationItemFlags> items;
  std::map<std::tuple<Text, FourCharCode, std::int16_t>, std::string> resources;
  std::map<Text, Text> aliasTargets;  // path -> where it leads in the end
};

}  // namespace halvorn
