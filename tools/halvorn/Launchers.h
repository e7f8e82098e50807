// What a person opens on a medium: a script that finds its own folder, and a desktop entry that finds the script wherever
// the medium is mounted. Neither is a folder, so every desktop starts it.
#pragma once

#include <string>

namespace halvorn {

struct LauncherFacts {
  std::string product;      // "Foo"
  std::string identifier;   // in the mark by which the entry knows the medium
  bool isInside = false;    // the installer lies in the product
  std::string readMe = {};  // file names at the top of the medium; "" for none
  std::string documentation = {};
};

inline constexpr char kMediumFolder[] = ".halvorn";
// "Install Foo"; a slash has no place in a file's name.
[[nodiscard]] std::string launcherName(const LauncherFacts& facts);
// The file below the top by which the medium is known.
[[nodiscard]] std::string markPath(const LauncherFacts& facts);
// The installer's bundle and the product's, below the top.
[[nodiscard]] std::string installerPath(const LauncherFacts& facts);
[[nodiscard]] std::string productPath(const LauncherFacts& facts);

[[nodiscard]] std::string launcherScript(const LauncherFacts& facts);
[[nodiscard]] std::string launcherEntry(const LauncherFacts& facts);

// One word of a shell, whatever it holds.
[[nodiscard]] std::string quotedForShell(const std::string& word);

}  // namespace halvorn
