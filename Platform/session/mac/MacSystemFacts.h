// What the system says of itself: Gestalt, the kernel's record of this process, its file systems.
#pragma once

#include "Platform/session/SystemFacts.h"

namespace halvorn {

class MacSystemFacts : public SystemFacts {
 public:
  [[nodiscard]] std::optional<int> majorVersion() const override;
  [[nodiscard]] std::optional<int> minorVersion() const override;
  [[nodiscard]] std::optional<int> bugfixVersion() const override;
  [[nodiscard]] std::optional<int> packedVersion() const override;
  [[nodiscard]] double frameworkVersion() const override;
  [[nodiscard]] bool isDebuggerAttached() const override;
  [[nodiscard]] FileSystemAnswer fileSystemOf(const Text& path) const override;
};

}  // namespace halvorn
