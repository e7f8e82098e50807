// Reading files that anybody may have put there: whole, up to a limit, never waiting on a pipe or a device.
//
// Whatever this program did not write itself is read by one of these.
//
// Fails: nullopt when there is no such file, it cannot be read, is no regular file or
// longer than the limit. Thread: any.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

// The bytes of the file at a path. Links are followed.
[[nodiscard]] std::optional<std::string> readRegularFile(const std::string& path, std::size_t limit);
// The same of a file that is open for reading, from where it stands.
[[nodiscard]] std::optional<std::string> readOpenFile(const FileDescriptor& file, std::size_t limit);
// At most `count` of the first bytes of the file at a path, however long it is. Links are followed.
[[nodiscard]] std::optional<std::string> readStartOfRegularFile(const std::string& path, std::size_t count);
// At most that many of its first bytes, however long it is.
[[nodiscard]] std::optional<std::string> readStartOfOpenFile(const FileDescriptor& file, std::size_t count);

}  // namespace halvorn
