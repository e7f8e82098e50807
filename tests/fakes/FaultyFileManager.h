// Passes everything on to another file manager and breaks what it was told to break.
#pragma once

#include <set>
#include <string>

#include "Platform/files/FileManager.h"

namespace halvorn {

class FaultyFileManager : public FileManager {
 public:
  explicit FaultyFileManager(FileManager& real) : real_(real) {}

  std::set<std::string> copiesThatFail;     // by the path copied to
  std::set<std::string> removalsThatFail;   // by the path to remove
  std::set<std::string> listingsThatFail;   // by the folder's path
  std::set<std::string> creationsThatFail;  // by the path to create

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
  bool copyItem(const Text& from, const Text& to) override {
    return !copiesThatFail.contains(to.bytes()) && real_.copyItem(from, to);
  }
  bool removeItem(const Text& path) override {
    return !removalsThatFail.contains(path.bytes()) && real_.removeItem(path);
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
