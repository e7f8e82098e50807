// A file system with nothing in it that nobody may write.
#pragma once

#include "Platform/files/FileManager.h"

namespace halvorn {

class NullFileManager : public FileManager {
 public:
  bool fileExists(const Text&) const override { return false; }
  bool isDirectory(const Text&) const override { return false; }
  bool isWritable(const Text&) const override { return false; }
  std::optional<std::vector<Text>> contentsOfDirectory(const Text&) const override { return std::nullopt; }
  std::optional<std::string> readFile(const Text&, std::size_t) const override { return std::nullopt; }
  bool isInside(const Text&, const Text&) const override { return false; }
  bool copyItem(const Text&, const Text&) override { return false; }
  bool removeItem(const Text&) override { return false; }
  bool opensForReadingAndWriting(const Text&) const override { return false; }
  bool createEmptyFile(const Text&) override { return false; }
};

}  // namespace halvorn
