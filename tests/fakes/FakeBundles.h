// Bundles in memory.
#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"

namespace halvorn {

class FakeBundles : public Bundles {
 public:
  struct Bundle {
    std::optional<PropertyDictionary> info;  // nullopt: cannot be read
    std::map<Text, Text> resources;          // "Product.icns" -> its path
    OptionalText executable;
  };

  Text mainBundlePath() const override { return mainBundle; }

  std::optional<PropertyDictionary> infoDictionary(const Text& bundlePath) const override {
    const Bundle* bundle = find(bundlePath);
    return bundle ? bundle->info : std::nullopt;
  }

  OptionalText pathForResource(const Text& bundlePath, const Text& name, const Text& type) const override {
    const Bundle* bundle = find(bundlePath);
    if (!bundle) return std::nullopt;
    const auto found = bundle->resources.find(type.isEmpty() ? name : name + Text(".") + type);
    return found == bundle->resources.end() ? std::nullopt : OptionalText(found->second);
  }

  std::vector<Text> resourcePaths(const Text& bundlePath) const override {
    std::vector<Text> paths;
    const Bundle* bundle = find(bundlePath);
    if (!bundle) return paths;
    for (const auto& [name, path] : bundle->resources) {
      if (Paths::deletingLastComponent(path) == bundlePath + Text("/Contents/Resources"))
        paths.push_back(path);
    }
    return paths;
  }

  OptionalText executablePath(const Text& bundlePath) const override {
    const Bundle* bundle = find(bundlePath);
    return bundle ? bundle->executable : std::nullopt;
  }

  std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const override {
    const auto found = propertyLists.find(path);
    return found == propertyLists.end() ? std::nullopt : std::optional(found->second);
  }

  void setInfo(const Text& bundlePath, PropertyDictionary info) {
    bundles[bundlePath].info = std::move(info);
  }
  // The resource lies in the bundle's Contents/Resources; returns its path.
  Text addResource(const Text& bundlePath, const Text& fileName) {
    return bundles[bundlePath].resources[fileName] = bundlePath + Text("/Contents/Resources/") + fileName;
  }

  Text mainBundle = "/Applications/Installer.app";
  std::map<Text, Bundle> bundles;
  std::map<Text, PropertyDictionary> propertyLists;  // path of the file -> what is in it

 private:
  const Bundle* find(const Text& path) const {
    const auto found = bundles.find(path);
    return found == bundles.end() ? nullptr : &found->second;
  }
};

}  // namespace halvorn
