// What a person opens on a medium: a program that finds its own folder, and a desktop entry that finds the program wherever
// the medium is mounted. Neither is a folder or a script, so every desktop starts it.
#pragma once

#include <string>

#include "packaging/linux/launcher/LauncherWords.h"

namespace halvorn {

struct LauncherFacts {
  std::string product;      // "Foo"
  std::string identifier;   // in the mark by which the entry knows the medium
  bool isInside = false;    // the installer lies in the product
  std::string readMe = {};  // file names at the top of the medium; "" for none
  std::string documentation = {};
};

// "Install Foo"; a slash has no place in a file's name.
[[nodiscard]] std::string launcherName(const LauncherFacts& facts);
// "Install Foo.desktop", without what means something in a command.
[[nodiscard]] std::string entryName(const LauncherFacts& facts);
// The file below the top by which the medium is known, and which the entry runs.
[[nodiscard]] std::string markPath(const LauncherFacts& facts);
// The installer's bundle and the product's, below the top.
[[nodiscard]] std::string installerPath(const LauncherFacts& facts);
[[nodiscard]] std::string productPath(const LauncherFacts& facts);

[[nodiscard]] LauncherWords launcherWords(const LauncherFacts& facts);
// Its command has no quoting within quoting, no dollar and no backslash: what file managers make of these differs.
[[nodiscard]] std::string launcherEntry(const LauncherFacts& facts);
// Starts the program at the top, or says why it cannot run: the shell runs where that does not.
[[nodiscard]] std::string entryScript(const LauncherFacts& facts);

// One word of a shell, whatever it holds.
[[nodiscard]] std::string quotedForShell(const std::string& word);

}  // namespace halvorn
