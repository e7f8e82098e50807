// Items of applications as a test describes them.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "Platform/bundles/ApplicationItems.h"

namespace halvorn {

class FakeApplicationItems : public ApplicationItems {
 public:
  std::optional<ApplicationItemFlags> flags(const Text& path) const override {
    const auto found = items.find(path);
    return found == items.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<std::string> resource(const Text& path, FourCharCode type, std::int16_t id) const override {
    const auto found = resources.find({path, type, id});
    return found == resources.end() ? std::nullopt : std::optional(found->second);
  }

  std::map<Text, ApplicationItemFlags> items;
  std::map<std::tuple<Text, FourCharCode, std::int16_t>, std::string> resources;
};

}  // namespace halvorn
