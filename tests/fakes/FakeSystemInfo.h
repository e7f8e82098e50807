// A system of any version.
#pragma once

#include "Platform/session/SystemInfo.h"

namespace halvorn {

class FakeSystemInfo : public SystemInfo {
 public:
  std::optional<int> majorVersion() const override { return major; }
  std::optional<int> minorVersion() const override { return minor; }
  std::optional<int> bugfixVersion() const override { return bugfix; }
  std::optional<int> packedVersion() const override { return packed; }
  double frameworkVersion() const override { return framework; }

  std::optional<int> major = 10;
  std::optional<int> minor = 14;
  std::optional<int> bugfix = 6;
  std::optional<int> packed;
  double framework = 1671.6;
};

}  // namespace halvorn
