// A system as a test describes it.
#pragma once

#include <map>

#include "Platform/session/SystemFacts.h"

namespace halvorn {

class FakeSystemFacts : public SystemFacts {
 public:
  std::optional<int> majorVersion() const override { return major; }
  std::optional<int> minorVersion() const override { return minor; }
  std::optional<int> bugfixVersion() const override { return bugfix; }
  std::optional<int> packedVersion() const override { return packed; }
  double frameworkVersion() const override { return framework; }
  bool isDebuggerAttached() const override { return debuggerIsAttached; }
  FileSystemAnswer fileSystemOf(const Text& path) const override {
    const auto found = fileSystemTypes.find(path);
    if (found == fileSystemTypes.end()) return {-1, ""};
    return {0, found->second};
  }

  std::optional<int> major = 10;
  std::optional<int> minor = 14;
  std::optional<int> bugfix = 6;
  std::optional<int> packed;
  double framework = 1671.6;
  bool debuggerIsAttached = false;
  std::map<Text, Text> fileSystemTypes;  // path -> type name
};

}  // namespace halvorn
