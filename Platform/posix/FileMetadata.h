// What belongs to a file besides its bytes: owner, mode, access lists, extended attributes, times.
#pragma once

#include <sys/stat.h>

#include <string>

namespace halvorn {

// Whom the copies belong to and what they may do.
enum class Ownership {
  // Owner and group of the original as far as this process may give them, everything else as it is.
  Kept,
  // This process. What would lend its rights to others stays behind: set-id bits, capabilities, access lists,
  // and
  // write permission for group and others.
  ThisProcess,
};

namespace FileMetadata {

// Gives the new item everything but the times. `facts` are the original's; both descriptors are open for
// reading or writing, the folders' for reading. Fails: false when anything could not be given that the file
// system can hold.
[[nodiscard]] bool copyAllButTimes(int source, int target, const struct stat& facts, Ownership ownership);

// Gives the new item, a link or anything else that is not opened, its owner and mode.
[[nodiscard]] bool copyToUnopened(int folder, const std::string& name, const struct stat& facts,
                                  Ownership ownership);

[[nodiscard]] bool copyTimes(int target, const struct stat& facts);
[[nodiscard]] bool copyTimes(int folder, const std::string& name, const struct stat& facts);

}  // namespace FileMetadata
}  // namespace halvorn
