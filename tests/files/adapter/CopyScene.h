// A temporary folder with what a copy needs to be tried and looked at.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

// A file system in memory, where thousands of files are no burden; the usual place where there is none.
inline std::filesystem::path folderInMemory() {
  const std::filesystem::path memory = "/dev/shm";
  return ::access(memory.c_str(), W_OK | X_OK) == 0 ? memory : std::filesystem::temp_directory_path();
}

class CopyScene : public testing::Test {
 protected:
  explicit CopyScene(const std::filesystem::path& base = std::filesystem::temp_directory_path())
      : folder(base) {}

  [[nodiscard]] std::string at(const std::string& path) const { return folder / path; }
  [[nodiscard]] bool copy(const std::string& from = "from", const std::string& to = "to") {
    return !files.copyItem(at(from), at(to));
  }

  void addFolder(const std::string& path) { std::filesystem::create_directories(at(path)); }
  void addFile(const std::string& path, const std::string& contents = "x") {
    std::filesystem::create_directories(std::filesystem::path(at(path)).parent_path());
    std::ofstream(at(path), std::ios::binary) << contents;
  }
  void addLink(const std::string& path, const std::string& target) {
    std::filesystem::create_symlink(target, at(path));
  }
  [[nodiscard]] std::string contents(const std::string& path) const {
    std::ifstream file(at(path), std::ios::binary | std::ios::ate);
    std::string bytes(file ? static_cast<std::size_t>(file.tellg()) : 0, '\0');
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
  }
  [[nodiscard]] struct stat facts(const std::string& path) const {
    struct stat result {};
    EXPECT_EQ(::lstat(at(path).c_str(), &result), 0) << path;
    return result;
  }
  [[nodiscard]] bool exists(const std::string& path) const {
    struct stat ignored {};
    return ::lstat(at(path).c_str(), &ignored) == 0;
  }
  [[nodiscard]] mode_t mode(const std::string& path) const { return facts(path).st_mode & 07777; }
  // False where the file system has no such attributes.
  [[nodiscard]] bool setAttribute(const std::string& path, const std::string& name,
                                  const std::string& value) {
    return ::lsetxattr(at(path).c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
  }
  [[nodiscard]] std::string attribute(const std::string& path, const std::string& name) const {
    std::string value(70'000, '\0');
    const ssize_t size = ::lgetxattr(at(path).c_str(), name.c_str(), value.data(), value.size());
    return size < 0 ? "(none)" : value.substr(0, static_cast<std::size_t>(size));
  }
  [[nodiscard]] static bool isRoot() { return ::geteuid() == 0; }

  TemporaryFolder folder;
  PosixFileManager files;
};

}  // namespace halvorn
