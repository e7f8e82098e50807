// A Trash over the file system in memory: what was recycled is gone from there and stands in `trashed`.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Core/Paths.h"
#include "Platform/files/Trash.h"
#include "tests/fakes/FakeFileManager.h"

namespace halvorn {

class FakeTrash : public Trash {
 public:
  struct Operation {
    std::string sourceFolder;
    std::vector<std::string> names;
    friend bool operator==(const Operation&, const Operation&) = default;
  };

  explicit FakeTrash(FakeFileManager& files) : files_(files) {}

  std::optional<FileFailure> recycle(const Text& sourceFolder, const std::vector<Text>& names) override {
    Operation operation{.sourceFolder = sourceFolder.bytes(), .names = {}};
    for (const Text& name : names) operation.names.push_back(name.bytes());
    operations.push_back(operation);
    for (const std::string& name : operation.names) files_.calls.push_back("recycle " + name);
    using Doing = FileFailure::Operation;
    std::optional<FileFailure> first;
    const auto note = [&](Doing what, const std::string& path, const char* reason) {
      if (!first) first = FileFailure{.operation = what, .path = path, .reason = reason};
    };
    for (const Text& name : names) {
      const std::string path = Paths::appending(sourceFolder, name).bytes();
      if (!files_.isDirectory(sourceFolder)) {
        note(Doing::Reach, path, "No such file or directory");
        continue;
      }
      if (files_.node(path) == nullptr) {
        note(Doing::Look, path, "No such file or directory");
        continue;
      }
      if (refuses || !files_.isWritable(sourceFolder)) {
        note(Doing::Move, path, "Permission denied");
        continue;
      }
      for (const std::string& part : files_.tree(path)) trashed[part] = *files_.node(part);
      files_.take(path);
    }
    return first;
  }

  bool refuses = false;
  std::vector<Operation> operations;
  std::map<std::string, FakeFileManager::Node> trashed;  // by the path it came from

 private:
  FakeFileManager& files_;
};

}  // namespace halvorn
