// The kernel's version as the system's.
#pragma once

#include "Core/Text.h"
#include "Platform/session/SystemInfo.h"

namespace halvorn {

class LinuxSystemInfo : public SystemInfo {
 public:
  LinuxSystemInfo();  // asks uname
  // For a release such as "6.1.90-amd64".
  explicit LinuxSystemInfo(const Text& release);

  std::optional<int> majorVersion() const override { return major_; }
  std::optional<int> minorVersion() const override { return minor_; }
  std::optional<int> bugfixVersion() const override { return bugfix_; }
  std::optional<int> packedVersion() const override { return std::nullopt; }
  double frameworkVersion() const override;

 private:
  std::optional<int> major_;
  std::optional<int> minor_;
  std::optional<int> bugfix_;
};

}  // namespace halvorn
