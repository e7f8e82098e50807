// File systems of a test's own, seen by this test program alone.
#pragma once

#include <string>
#include <vector>

#include "tests/files/adapter/CopyScene.h"

namespace halvorn {

// Mounts are made in a mount namespace of this program, and go with it.
class MountedScene : public CopyScene {
 protected:
  MountedScene() : CopyScene(folderInMemory()) {}
  // Skips where this process may not mount.
  void SetUp() override;
  void TearDown() override;

  // Makes a file system in a file of so many megabytes and mounts it at the folder `name`. Empty when that
  // worked, else the reason.
  [[nodiscard]] std::string mountNew(const std::string& kind, const std::string& name, int megabytes);
  // Any mount command; `name` is unmounted at the end.
  [[nodiscard]] std::string mountAt(const std::string& name, std::vector<std::string> arguments);
  [[nodiscard]] static std::string run(const std::vector<std::string>& command);  // empty: status 0

 private:
  std::vector<std::string> mounted_;
};

}  // namespace halvorn
