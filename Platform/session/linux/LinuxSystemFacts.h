// The kernel's version as the system's, the process table's word on debuggers, the mounts' on file systems.
#pragma once

#include "Core/Text.h"
#include "Platform/session/SystemFacts.h"
#include "Platform/session/linux/MountedFileSystems.h"
#include "Platform/session/linux/ProcDebugger.h"

namespace halvorn {

class LinuxSystemFacts : public SystemFacts {
 public:
  LinuxSystemFacts();  // asks uname
  // For a release such as "6.1.90-amd64".
  explicit LinuxSystemFacts(const Text& release);
  std::optional<int> majorVersion() const override { return major_; }
  std::optional<int> minorVersion() const override { return minor_; }
  std::optional<int> bugfixVersion() const override { return bugfix_; }
  std::optional<int> packedVersion() const override { return std::nullopt; }
  double frameworkVersion() const override;
  bool isDebuggerAttached() const override { return debugger_.isAttached(); }
  FileSystemAnswer fileSystemOf(const Text& path) const override;

 private:
  std::optional<int> major_;
  std::optional<int> minor_;
  std::optional<int> bugfix_;
  ProcDebugger debugger_;
  MountedFileSystems fileSystems_;
};

}  // namespace halvorn
