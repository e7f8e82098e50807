// The file system, as the installer asks it.
//
// Thread: any; implementations keep no state between calls.
// Fails: every operation answers; nothing throws. Existence tests follow links: a
// link to nowhere does not exist.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/files/FileFailure.h"

namespace halvorn {

class FileManager {
 public:
  virtual ~FileManager() = default;

  [[nodiscard]] virtual bool fileExists(const Text& path) const = 0;   // links are followed
  [[nodiscard]] virtual bool isDirectory(const Text& path) const = 0;  // likewise
  // Whether this process may write the existing item; false when there is none.
  [[nodiscard]] virtual bool isWritable(const Text& path) const = 0;
  // Entry names without "." and "..", hidden ones included, in the order the system
  // lists them. nullopt: unreadable.
  [[nodiscard]] virtual std::optional<std::vector<Text>> contentsOfDirectory(const Text& path) const = 0;
  // The bytes of a regular file of at most `limit` bytes; nullopt for anything else.
  // Never blocks on a pipe or device.
  [[nodiscard]] virtual std::optional<std::string> readFile(const Text& path, std::size_t limit) const = 0;

  // Whether the item at `path` is the item at `folder` or stands somewhere in it; by what is on disk, not by
  // how the paths are written. False when either is missing.
  [[nodiscard]] virtual bool isInside(const Text& path, const Text& folder) const = 0;

  // Copies a file, link or folder with everything in it: bytes, modes, times, links as links, hard links
  // within the tree, extended attributes and access lists, holes. Fails: when something is at `to` (a link to
  // nowhere counts), when `to` lies inside of `from`, or when any part could not be copied; what was copied
  // stays. Answers the first thing that went wrong:
  //
  //   if (const auto failure = files.copyItem(from, to)) ...
  [[nodiscard]] virtual std::optional<FileFailure> copyItem(const Text& from, const Text& to) = 0;
  // What is in the way of copyItem() and can be known before anything is touched: the original cannot be
  // reached, nothing can be opened any more, a file would be larger than this process may write. nullopt:
  // nothing that is known; it may fail all the same. `to` need not be there yet, nor the folder it is in.
  [[nodiscard]] virtual std::optional<FileFailure> obstacleToCopying(const Text& from,
                                                                     const Text& to) const = 0;
  // Removes the item and everything in it for good; links are removed, never followed. Fails: when anything
  // is left, and answers the first thing that went wrong.
  [[nodiscard]] virtual std::optional<FileFailure> removeItem(const Text& path) = 0;

  // Opens the existing file for reading and writing and closes it again.
  [[nodiscard]] virtual bool opensForReadingAndWriting(const Text& path) const = 0;
  // Creates an empty file that was not there, for reading and writing, and closes it. Its mode is what new
  // files have by default: read and write for everybody, less what the process's mask takes away.
  [[nodiscard]] virtual bool createEmptyFile(const Text& path) = 0;
};

}  // namespace halvorn
