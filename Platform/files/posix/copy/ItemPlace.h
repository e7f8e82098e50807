// Where an item stands: its folder, held open, and its name in there. What happens to the path's folders
// afterwards cannot lead elsewhere.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/files/posix/copy/Cause.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// What becomes of links among the folders of a path. The last component is never followed.
enum class LinksInTheWay {
  Followed,
  FollowedOnDisk,  // but not those of the process table, which lead past the permissions of folders
  Refused,         // and so are relative paths and ".."
};

struct ItemPlace {
  FileDescriptor folder;
  std::string name;  // never empty, ".", ".." or with a slash
  std::string path;  // as it was asked for; to tell what it was
};

// The bytes of the path for the system; nullopt for the empty path and for one with a NUL in it.
[[nodiscard]] std::optional<std::string> systemPath(const Text& path);

// The folders that a run works in, held from the first time each is asked for. Whatever is then
// put in the place of one of them or of a folder above it, the path goes on to mean the folder it
// meant first. Refuses links. Thread: any.
class FolderPins {
 public:
  // Fails: when the folder cannot be reached without links; it is then looked for again next time.
  OrCause<FileDescriptor> open(const std::string& path);

 private:
  std::mutex mutex_;
  std::map<std::vector<std::string>, FileDescriptor> folders_;  // by the components of their paths
};

// Fails: when the folder cannot be reached, or when the path names no item in a folder ("/", "a/..").
OrCause<ItemPlace> placeOf(const Text& path, LinksInTheWay links);
OrCause<ItemPlace> placeOf(const Text& path, FolderPins& pins);

// The folder itself, opened to name things in.
OrCause<FileDescriptor> openFolder(const std::string& path, LinksInTheWay links);

}  // namespace halvorn
