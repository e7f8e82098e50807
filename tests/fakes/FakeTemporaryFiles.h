// Temporary files in memory.
#pragma once

#include <map>

#include "Core/Format.h"
#include "Platform/files/TemporaryFiles.h"

namespace halvorn {

class FakeTemporaryFiles : public TemporaryFiles {
 public:
  OptionalText create() override {
    if (isFull) return std::nullopt;
    const Text path = format("/tmp/halvorn-%d", ++created);
    files[path] = "";
    return path;
  }
  std::optional<std::string> contents(const Text& path) const override {
    const auto found = files.find(path);
    return found == files.end() ? std::nullopt : std::optional(found->second);
  }
  void remove(const Text& path) override { files.erase(path); }

  bool isFull = false;
  int created = 0;
  std::map<Text, std::string> files;  // those not yet removed
};

}  // namespace halvorn
