// Passes everything on to another file manager and breaks what it was told to break.
#pragma once

#include <set>
#include <string>

#include "Platform/files/FileManager.h"

namespace halvorn {

class FaultyFileManager : public FileManager {
 public:
  explicit FaultyFileManager(FileManager& real) : real_(real) {}

  std::set<std::string> copiesThatFail;        // by the path copied to: something in there finds no room
  std::set<std::string> copiesForeseenToFail;  // by the path copied to: nothing can be opened any more
  std::set<std::string> removalsThatFail;      // by the path to remove: something in there is kept
  std::set<std::string> listingsThatFail;      // by the folder's path
  std::set<std::string> creationsThatFail;     // by the path to create

  bool fileExists(const Text& path) const override { return real_.fileExists(path); }
  bool isDirectory(const Text& path) const override { return real_.isDirectory(path); }
  bool isWritable(const Text& path) const override { return real_.isWritable(path); }
  std::optional<std::vector<Text>> contentsOfDirectory(const Text& path) const override {
    if (listingsThatFail.contains(path.bytes())) return std::nullopt;
    return real_.contentsOfDirectory(path);
  }
  std::optional<std::string> readFile(const Text& path, std::size_t limit) const override {
    return real_.readFile(path, limit);
  }
  bool isInside(const Text& path, const Text& folder) const override { return real_.isInside(path, folder); }
  std::optional<FileFailure> copyItem(const Text& from, const Text& to) override {
    if (!copiesThatFail.contains(to.bytes())) return real_.copyItem(from, to);
    return FileFailure{.operation = FileFailure::Operation::Write,
                       .path = to + "/deep/within",
                       .reason = "No space left on device"};
  }
  std::optional<FileFailure> obstacleToCopying(const Text& from, const Text& to) const override {
    if (!copiesForeseenToFail.contains(to.bytes())) return real_.obstacleToCopying(from, to);
    return FileFailure{
        .operation = FileFailure::Operation::Make, .path = to, .reason = "Too many open files"};
  }
  std::optional<FileFailure> removeItem(const Text& path) override {
    if (!removalsThatFail.contains(path.bytes())) return real_.removeItem(path);
    return FileFailure{.operation = FileFailure::Operation::Remove,
                       .path = path + "/deep/within",
                       .reason = "Operation not permitted"};
  }
  bool opensForReadingAndWriting(const Text& path) const override {
    return real_.opensForReadingAndWriting(path);
  }
  bool createEmptyFile(const Text& path) override {
    return !creationsThatFail.contains(path.bytes()) && real_.createEmptyFile(path);
  }

 private:
  FileManager& real_;
};

}  // namespace halvorn
