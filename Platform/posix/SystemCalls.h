// The calls that one kernel has and another has not, each with an answer for "not here".
#pragma once

#include <fcntl.h>
#include <sys/types.h>

#include <optional>
#include <string>

#include "Platform/posix/FileDescriptor.h"

namespace halvorn::SystemCalls {

// Opens only to name an item or things in it, where the system tells that from reading.
#ifdef O_PATH
inline constexpr int openPath = O_PATH;
#else
inline constexpr int openPath = O_RDONLY;
#endif

// Opens the absolute path when no component of it is a link. nullopt: this kernel cannot; empty: it refused.
[[nodiscard]] std::optional<FileDescriptor> openWithoutLinks(const std::string& path, int flags);

// Renames unless something has the new name. Returns 0 or the error number, EEXIST for the new name being
// taken.
[[nodiscard]] int renameWithoutReplacing(int fromFolder, const char* from, int toFolder, const char* to);

// The two descriptors are the same item; lie on one file system; lie on one mount of one file system (the
// same file system may be mounted twice, and nothing can be renamed across).
[[nodiscard]] bool isSameItem(int a, int b);
[[nodiscard]] bool isSameFileSystem(int a, int b);
[[nodiscard]] bool isSameMount(int a, int b);

// The absolute path of an open folder, without links; nullopt when it has none any more.
[[nodiscard]] std::optional<std::string> pathOf(int folder);

// Changes the owner of what was opened, also of a link or when only opened to name it.
[[nodiscard]] bool changeOwner(int item, uid_t user, gid_t group);

}  // namespace halvorn::SystemCalls
