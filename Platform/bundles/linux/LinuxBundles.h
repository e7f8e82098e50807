// Application bundles as they lie on a Linux disk.
#pragma once

#include <vector>

#include "Platform/bundles/Bundles.h"

namespace halvorn {

class BundleFolder;

class LinuxBundles : public Bundles {
 public:
  // `programPath` is that of this program, links resolved. The languages come best first.
  LinuxBundles(const Text& programPath, std::vector<Text> languages);

  Text mainBundlePath() const override { return mainBundlePath_; }
  // "KEY-linux" answers for "KEY". In flat bundles NSExecutable, NSIcon and ApplicationRelease stand in where
  // the keys CFBundleExecutable, CFBundleIconFile and CFBundleShortVersionString are missing.
  std::optional<PropertyDictionary> infoDictionary(const Text& bundlePath) const override;
  OptionalText pathForResource(const Text& bundlePath, const Text& name, const Text& type) const override;
  std::vector<Text> resourcePaths(const Text& bundlePath) const override;
  // The program for Linux first, then the one for the other system.
  OptionalText executablePath(const Text& bundlePath) const override;
  std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const override;

 private:
  // The folders to search, relative to the bundle, best first.
  [[nodiscard]] std::vector<Text> resourceFolders(const BundleFolder& bundle) const;

  Text mainBundlePath_;
  std::vector<Text> languages_;
};

}  // namespace halvorn
