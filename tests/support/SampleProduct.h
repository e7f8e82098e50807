// Product bundles that tests put on a disk-image folder.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace halvorn {

struct SampleProduct {
  std::string name = "Sample";
  std::string version = "2.0";
  std::optional<std::string> signature = "SMPL";
  std::optional<std::string> minSystemVersion = std::nullopt;
  // The program; the small windowed one of samples/ when empty.
  std::filesystem::path program = {};
  std::string programFolder = "Linux";  // in Contents
  // A drawn icon as Contents/Resources/Sample.png.
  bool hasIcon = true;
};

// Makes `folder`/<name>.app; returns its path.
std::filesystem::path makeSampleProduct(const std::filesystem::path& folder,
                                        const SampleProduct& product = {});

// A read-me as rich text, and a guide as HTML.
std::filesystem::path makeReadMe(const std::filesystem::path& folder);
std::filesystem::path makeGuide(const std::filesystem::path& folder);

// "2.0", out of the Info.plist that makeSampleProduct() wrote; "" when there is none.
[[nodiscard]] std::string versionOfBundle(const std::filesystem::path& bundle);

}  // namespace halvorn
