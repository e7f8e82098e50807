// A system without files.
#pragma once

#include "Core/Paths.h"
#include "Platform/files/FileChangeNotices.h"
#include "Platform/files/FileHandles.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/ItemClaims.h"
#include "Platform/files/ItemSizes.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/files/TemporaryFiles.h"
#include "Platform/files/Trash.h"

namespace halvorn {

// A file system with nothing in it that nobody may write.
class NullFileManager : public FileManager {
 public:
  bool fileExists(const Text&) const override { return false; }
  bool isDirectory(const Text&) const override { return false; }
  bool isWritable(const Text&) const override { return false; }
  std::optional<std::vector<Text>> contentsOfDirectory(const Text&) const override { return std::nullopt; }
  std::optional<std::string> readFile(const Text&, std::size_t) const override { return std::nullopt; }
  bool isInside(const Text&, const Text&) const override { return false; }
  std::optional<FileFailure> copyItem(const Text&, const Text& to) override {
    return FileFailure{
        .operation = FileFailure::Operation::Make, .path = to, .reason = "there are no files here"};
  }
  std::optional<FileFailure> obstacleToCopying(const Text&, const Text& to) const override {
    return FileFailure{
        .operation = FileFailure::Operation::Make, .path = to, .reason = "there are no files here"};
  }
  std::optional<FileFailure> removeItem(const Text& path) override {
    return FileFailure{
        .operation = FileFailure::Operation::Remove, .path = path, .reason = "there are no files here"};
  }
  bool opensForReadingAndWriting(const Text&) const override { return false; }
  bool createEmptyFile(const Text&) override { return false; }
};

// Notices that nobody hears.
class NullFileChangeNotices : public FileChangeNotices {
 public:
  void noteFileSystemChanged(const Text&) override {}
};

// The root for a home, and no other folder.
class NullSearchPaths : public SearchPaths {
 public:
  Text homeFolder() const override { return "/"; }
  OptionalText homeFolderOf(const Text&) const override { return std::nullopt; }
  std::vector<Text> localApplicationsFolders() const override { return {}; }
  std::vector<Text> userApplicationsFolders() const override { return {}; }
  std::vector<Text> volumeFolders() const override { return {}; }
  std::vector<Text> soundFolders() const override { return {}; }
};

// No temporary files.
class NullTemporaryFiles : public TemporaryFiles {
 public:
  OptionalText create() override { return std::nullopt; }
  std::optional<std::string> contents(const Text&) const override { return std::nullopt; }
  void remove(const Text&) override {}
};

// Nobody knows how much there is.
class NullItemSizes : public ItemSizes {
 public:
  std::optional<std::uint64_t> bytesIn(const Text&, const Cancellation&) const override {
    return std::nullopt;
  }
};

// Nobody knows who works on what.
class NullItemClaims : public ItemClaims {
 public:
  Claim claim(const Text&, std::function<void()>) override { return Claim::Unknown; }
};

// A Trash that takes nothing: every item stays where it is.
class NullTrash : public Trash {
 public:
  std::optional<FileFailure> recycle(const Text& sourceFolder, const std::vector<Text>& names) override {
    if (names.empty()) return std::nullopt;
    return FileFailure{.operation = FileFailure::Operation::Move,
                       .path = Paths::appending(sourceFolder, names.front()),
                       .reason = "there is no Trash here"};
  }
};

// No file can be opened.
class NullFileHandles : public FileHandles {
 public:
  std::unique_ptr<FileHandle> openForWriting(const Text&) const override { return nullptr; }
};

}  // namespace halvorn
