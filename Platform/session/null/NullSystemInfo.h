// A system that tells nothing: version 0.0, older than every release.
#pragma once

#include "Platform/session/SystemInfo.h"

namespace halvorn {

class NullSystemInfo : public SystemInfo {
 public:
  std::optional<int> majorVersion() const override { return std::nullopt; }
  std::optional<int> minorVersion() const override { return std::nullopt; }
  std::optional<int> bugfixVersion() const override { return std::nullopt; }
  std::optional<int> packedVersion() const override { return std::nullopt; }
  double frameworkVersion() const override { return 0.0; }
};

}  // namespace halvorn
