// The calls that no two kernels have alike, each with an answer for "not here".
// Each system's folder defines them.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <array>
#include <cstddef>
#include <ctime>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
struct FolderEntry;
}

namespace halvorn::SystemCalls {

// Opens only to name an item or things in it, where the system tells that from reading.
extern const int openPath;
// Opens without noting the time of the access; 0 where the system always notes it. Only
// the owner and the administrator may.
extern const int openQuietly;

// How a path is resolved in one call of the kernel.
enum class Resolution {
  WithoutLinks,         // no component may be a link
  BeneathWithoutLinks,  // and nothing leads out of the folder it starts from
  WithoutProcessLinks,  // links are followed, those of the process table that stand for open files apart
};

// Opens the path, from `folder` when it is relative. nullopt: this kernel cannot; empty: it refused.
[[nodiscard]] std::optional<FileDescriptor> openResolving(int folder, const std::string& path, int flags,
                                                          Resolution resolution);

// Renames unless something has the new name. Returns 0 or the error number,
// EEXIST for the new name being taken.
[[nodiscard]] int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to);

// The two descriptors are the same item; lie on one file system; lie on one mount of one file system (the
// same file system may be mounted twice, and nothing can be renamed across).
[[nodiscard]] bool isSameItem(int a, int b);
[[nodiscard]] bool isSameFileSystem(int a, int b);
[[nodiscard]] bool isSameMount(int a, int b);

// What the mounts of the item's file system begin with, by device and number: below such an item, what is in
// the one mount is in the other, too. nullopt: the system does not tell, or one of them cannot be looked at.
using ItemNumbers = std::set<std::pair<dev_t, ino_t>>;
[[nodiscard]] std::optional<ItemNumbers> topsOfMounts(int item);

// The absolute path of an open folder, without links; nullopt when it has none any more.
[[nodiscard]] std::optional<std::string> pathOf(int folder);

// Opens anything, a link included, only to hold it: whatever takes its name
// afterwards, this stays it. Empty on failure.
[[nodiscard]] FileDescriptor holdItem(int folder, const char* name);
// Change what was opened, also when it is only held. A link has no mode to change. Fails: false, also where
// the system has no way that leads to the held item and nowhere else.
[[nodiscard]] bool changeOwner(int item, uid_t user, gid_t group);
[[nodiscard]] bool changeMode(int item, mode_t mode);
[[nodiscard]] bool changeTimes(int item, const timespec times[2]);
// The text of a held link; at most `room` bytes of it. nullopt: it is none.
[[nodiscard]] std::optional<std::string> textOfLink(int item, std::size_t room);
// Whether the item was given another name or other rights more than a moment after it was made. No where the
// file system does not note when things were made.
[[nodiscard]] bool wasChangedSinceItsBirth(int item);

// Makes a pipe, socket or device of that kind and mode. Fails: false.
[[nodiscard]] bool makeNode(int folder, const char* name, mode_t mode, dev_t device);

// The times of the last access and the last change, as the calls that set them want them.
[[nodiscard]] std::array<timespec, 2> timesOf(const struct stat& facts);

// Puts the next entries of the open folder behind those that are there; their names lie in the buffer. Returns
// the bytes used of it, 0 at the end, -1 on failure.
[[nodiscard]] ssize_t readEntries(int folder, char* buffer, std::size_t room,
                                  std::vector<FolderEntry>& entries);

// Reads without waiting for a disk. Returns what was there, which may be less than wanted; -1 when nothing
// was, or when this system cannot say.
[[nodiscard]] ssize_t readIfInMemory(int file, char* buffer, std::size_t count, off_t offset);
// Asks for bytes that will be read soon.
void fetchAhead(int file, off_t start, off_t count);

// The bytes as memory that may only be read, made ready at once where the system can; null when it cannot.
// `start` is a multiple of the page size.
[[nodiscard]] void* mapToRead(int file, off_t start, std::size_t size);

// Lets the new, empty file share the original's blocks. False when the file systems cannot.
[[nodiscard]] bool clone(int source, int target);
// Lets the system copy up to `count` bytes at `offset` to the same place of the other file. Returns how many
// it copied; 0 when it cannot copy between these two, or when the original ends; -1 on failure.
[[nodiscard]] ssize_t copyPart(int source, int target, off_t offset, off_t count);
// Whether the file's file system keeps the facts of all files in one tree, so that only
// one thread at a time can change any.
[[nodiscard]] bool hasOneTree(int file);
// Finds room for so many bytes in a new file, where the file system can. Fails:
// false when there is not enough room.
[[nodiscard]] bool reserve(int file, off_t size);

// How many processors this process may use; at least 1.
[[nodiscard]] unsigned usableProcessors();

}  // namespace halvorn::SystemCalls
