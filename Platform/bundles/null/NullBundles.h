// A system without bundles, settings and translations.
#pragma once

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/Defaults.h"
#include "Platform/bundles/ItemFacts.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/bundles/Workspace.h"

namespace halvorn {

// No bundle anywhere, not even around this program, and no property list that could be read.
class NullBundles : public Bundles {
 public:
  Text mainBundlePath() const override { return "/"; }
  std::optional<PropertyDictionary> infoDictionary(const Text&) const override { return std::nullopt; }
  OptionalText pathForResource(const Text&, const Text&, const Text&) const override { return std::nullopt; }
  std::vector<Text> resourcePaths(const Text&) const override { return {}; }
  OptionalText executablePath(const Text&) const override { return std::nullopt; }
  std::optional<PropertyDictionary> dictionaryAtPath(const Text&) const override { return std::nullopt; }
};

// No settings.
class NullDefaults : public Defaults {
 public:
  std::optional<PropertyValue> objectForKey(const Text&) const override { return std::nullopt; }
  std::optional<PropertyValue> objectForKey(const Text&, const Text&) const override { return std::nullopt; }
};

// No translations: the English texts.
class NullLocalizedStrings : public LocalizedStrings {
 public:
  Text localized(const Text& key) const override { return key; }
};

// A workspace that opens and registers nothing and starts nothing by itself.
class NullWorkspace : public Workspace {
 public:
  bool openFile(const Text&) override { return false; }
  bool openUrl(const Text&) override { return false; }
  int registerBundle(const Text&) override { return -1; }
  bool hasIcon(const Text&) override { return false; }
  Text displayName(const Text& path) const override { return Paths::lastComponent(path); }
  std::optional<std::vector<OptionalText>> loginItems() const override { return std::nullopt; }
};

// Nothing is known of items on disk.
class NullItemFacts : public ItemFacts {
 public:
  std::optional<ApplicationItemFlags> flags(const Text&) const override { return std::nullopt; }
  std::optional<std::string> resource(const Text&, FourCharCode, std::int16_t) const override {
    return std::nullopt;
  }
  OptionalText aliasTarget(const Text&) const override { return std::nullopt; }
};

}  // namespace halvorn
