// A bundle as a folder on disk: which layout it has, and reading in it without ever leaving it.
//
// Two layouts: "Name.app/Contents/..." and the flat one, "Name.app/<program>" with "Name.app/Resources".
// Why: docs/decisions/009-nothing-outside-a-bundle.md
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/files/linux/FoundItem.h"

namespace halvorn {

class BundleFolder {
 public:
  enum class Layout { Contents, Flat };

  // nullopt when no folder is at the path. The path itself may be a link.
  [[nodiscard]] static std::optional<BundleFolder> at(const Text& path);

  [[nodiscard]] const Text& path() const { return path_; }
  [[nodiscard]] Layout layout() const { return layout_; }
  // "Name" of ".../Name.app".
  [[nodiscard]] Text name() const;
  // "Contents/Resources" or "Resources", relative to the bundle.
  [[nodiscard]] Text resources() const;

  // The item at a path relative to the bundle; nullopt when there is none or when
  // a link leads out of the bundle.
  [[nodiscard]] std::optional<FoundItem> find(const Text& relativePath) const;
  [[nodiscard]] std::optional<std::string> read(const Text& relativePath, std::size_t limit) const;
  [[nodiscard]] Text pathOf(const Text& relativePath) const;

 private:
  BundleFolder(const Text& path, std::string realPath);

  Text path_;
  Layout layout_ = Layout::Flat;
  std::vector<std::string> realFolders_;  // what counts as the bundle
};

// Whether the text can be the relative path of something within a bundle: no
// "..", not absolute, no zero unit.
[[nodiscard]] bool staysInside(const Text& relativePath);

// The innermost ".app" folder that contains the path; nullopt when none does.
[[nodiscard]] OptionalText bundleAround(const Text& path);

}  // namespace halvorn
