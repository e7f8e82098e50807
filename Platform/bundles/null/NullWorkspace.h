// A workspace that opens and registers nothing.
#pragma once

#include "Core/Paths.h"
#include "Platform/bundles/Workspace.h"

namespace halvorn {

class NullWorkspace : public Workspace {
 public:
  bool openFile(const Text&) override { return false; }
  bool openUrl(const Text&) override { return false; }
  int registerBundle(const Text&) override { return -1; }
  bool hasIcon(const Text&) override { return false; }
  Text displayName(const Text& path) const override { return Paths::lastComponent(path); }
};

}  // namespace halvorn
