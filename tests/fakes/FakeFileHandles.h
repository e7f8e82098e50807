// Open files of a FakeFileManager. Tests can let writing fail.
#pragma once

#include <string>

#include "Platform/files/FileHandles.h"
#include "tests/fakes/FakeFileManager.h"

namespace halvorn {

class FakeFileHandles : public FileHandles {
 public:
  explicit FakeFileHandles(FakeFileManager& files) : files_(files) {}

  std::unique_ptr<FileHandle> openForWriting(const Text& path) const override {
    FakeFileManager::Node* const node = files_.node(path.bytes());
    const bool isFile = node != nullptr && node->kind == FakeFileManager::Kind::File && node->isWritable;
    return isFile ? std::make_unique<Handle>(*this, *node) : nullptr;
  }

  bool canWrite = true;
  mutable int opened = 0;
  mutable int closed = 0;

 private:
  class Handle : public FileHandle {
   public:
    Handle(const FakeFileHandles& owner, FakeFileManager::Node& node) : owner_(owner), node_(node) {
      ++owner_.opened;
    }
    ~Handle() override { ++owner_.closed; }
    bool seekToEnd() override {
      position_ = node_.contents.size();
      return true;
    }
    bool write(std::string_view bytes) override {
      if (!owner_.canWrite) return false;
      node_.contents.replace(position_, bytes.size(), bytes);
      position_ += bytes.size();
      return true;
    }

   private:
    const FakeFileHandles& owner_;
    FakeFileManager::Node& node_;
    std::size_t position_ = 0;
  };

  FakeFileManager& files_;
};

}  // namespace halvorn
