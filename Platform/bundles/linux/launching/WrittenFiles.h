// Writing small files that others read at any moment.
#pragma once

#include <string>

namespace halvorn {

// Makes the folders (0700) and puts the file into place at once, so that nobody ever reads half of it. False
// when anything failed; the old file is then as it was.
[[nodiscard]] bool writeFileAtomically(const std::string& path, const std::string& bytes);
void removeFile(const std::string& path);
// Sets the time of the last change to now.
void touch(const std::string& path);

}  // namespace halvorn
