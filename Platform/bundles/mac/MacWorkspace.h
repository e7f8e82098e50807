// The workspace and Launch Services.
#pragma once

#include "Platform/bundles/Workspace.h"

namespace halvorn {

class MacWorkspace : public Workspace {
 public:
  bool openFile(const Text& path) override;
  bool openUrl(const Text& url) override;
  int registerBundle(const Text& urlText) override;
  bool hasIcon(const Text& path) override;
  Text displayName(const Text& path) const override;
  std::optional<std::vector<OptionalText>> loginItems() const override;
};

}  // namespace halvorn
