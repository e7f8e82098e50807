// No temporary files.
#pragma once

#include "Platform/files/TemporaryFiles.h"

namespace halvorn {

class NullTemporaryFiles : public TemporaryFiles {
 public:
  OptionalText create() override { return std::nullopt; }
  std::optional<std::string> contents(const Text&) const override { return std::nullopt; }
  void remove(const Text&) override {}
};

}  // namespace halvorn
