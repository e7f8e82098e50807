// Temporary files in one folder.
#pragma once

#include "Platform/files/TemporaryFiles.h"

namespace halvorn {

class PosixTemporaryFiles : public TemporaryFiles {
 public:
  // In the system's folder for temporary files: TMPDIR when it names a folder, else /tmp.
  PosixTemporaryFiles();
  explicit PosixTemporaryFiles(const Text& folder);

  OptionalText create() override;
  std::optional<std::string> contents(const Text& path) const override;
  void remove(const Text& path) override;

 private:
  Text folder_;
};

}  // namespace halvorn
