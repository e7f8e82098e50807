// Items that anybody may have put there, held fast before they are looked at or read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// The item behind a path, not opened for reading: looking at it never blocks and has no effect on a device.
struct FoundItem {
  FileDescriptor descriptor;  // O_PATH
  std::string realPath;       // where it really is, links followed
};

// nullopt when there is none, or its path holds a zero byte.
[[nodiscard]] std::optional<FoundItem> findItem(const std::string& path);

[[nodiscard]] bool isFolder(const FoundItem& item);
[[nodiscard]] bool isRegularFile(const FoundItem& item);
// At the folder itself or below it. Both are real paths.
[[nodiscard]] bool isWithin(const std::string& realPath, const std::string& folder);

// The bytes of a regular file, as readOpenFile().
[[nodiscard]] std::optional<std::string> readItem(const FoundItem& item, std::size_t limit);
// The first bytes of a regular file, at most that many.
[[nodiscard]] std::optional<std::string> readStart(const FoundItem& item, std::size_t count);

// Entry names without "." and "..", in the order of the listing; empty when it cannot be listed.
[[nodiscard]] std::vector<std::string> folderEntries(const FoundItem& folder);

}  // namespace halvorn
