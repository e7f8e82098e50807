// Where an item stands: its folder, held open, and its name in there. What happens to the path's folders
// afterwards cannot lead elsewhere.
#pragma once

#include <optional>
#include <string>

#include "Core/Text.h"
#include "Platform/posix/FileDescriptor.h"

namespace halvorn {

// What becomes of links among the folders of a path. The last component is never followed.
enum class LinksInTheWay {
  Followed,
  Refused,  // and so are relative paths and ".."
};

struct ItemPlace {
  FileDescriptor folder;
  std::string name;  // never empty, ".", ".." or with a slash
};

// The bytes of the path for the system; nullopt for the empty path and for one with a NUL in it.
[[nodiscard]] std::optional<std::string> systemPath(const Text& path);

// Fails: nullopt when the folder cannot be reached, or when the path names no item in a folder ("/", "a/..").
[[nodiscard]] std::optional<ItemPlace> placeOf(const Text& path, LinksInTheWay links);

// The folder itself, opened to name things in; empty on failure.
[[nodiscard]] FileDescriptor openFolder(const std::string& path, LinksInTheWay links);

}  // namespace halvorn
