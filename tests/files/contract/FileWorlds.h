// What the cases of the contract are asked of: a file system to try things on.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/files/FileManager.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

// Paths given to it are relative to its top.
class FileWorld {
 public:
  virtual ~FileWorld() = default;
  virtual FileManager& files() = 0;
  virtual std::string at(const std::string& path) const = 0;
  virtual void addFolder(const std::string& path) = 0;
  virtual void addFile(const std::string& path, const std::string& contents) = 0;
  virtual void addLink(const std::string& path, const std::string& target) = 0;
  virtual void addPipe(const std::string& path) = 0;
  // Nobody but the administrator may change what is in the folder; read the file.
  virtual void close(const std::string& folder) = 0;
  virtual void hide(const std::string& file) = 0;
  // Does the work with the rights of somebody who is not the administrator and may write at the top.
  virtual void asOrdinaryPerson(const std::function<void()>& work) = 0;
};

// On the disk, handled by one of the adapters.
template <typename Files>
class DiskFileWorld : public FileWorld {
 public:
  FileManager& files() override { return files_; }
  std::string at(const std::string& path) const override { return folder_ / path; }
  void addFolder(const std::string& path) override { std::filesystem::create_directories(at(path)); }
  void addFile(const std::string& path, const std::string& contents) override {
    std::filesystem::create_directories(std::filesystem::path(at(path)).parent_path());
    std::ofstream(at(path), std::ios::binary) << contents;
  }
  void addLink(const std::string& path, const std::string& target) override {
    std::filesystem::create_symlink(target, at(path));
  }
  void addPipe(const std::string& path) override { ASSERT_EQ(::mkfifo(at(path).c_str(), 0600), 0); }
  void close(const std::string& folder) override { ASSERT_EQ(::chmod(at(folder).c_str(), 0555), 0); }
  void hide(const std::string& file) override { ASSERT_EQ(::chmod(at(file).c_str(), 0), 0); }
  void asOrdinaryPerson(const std::function<void()>& work) override {
    const OrdinaryUser user(at(""));
    work();
  }

 private:
  TemporaryFolder folder_;
  Files files_;
};

// One of those that this program was built with.
struct NamedFileWorld {
  const char* name;
  std::unique_ptr<FileWorld> (*make)();
};
[[nodiscard]] const std::vector<NamedFileWorld>& fileWorlds();

}  // namespace halvorn
