// A desktop and a system that tell nothing.
#pragma once

#include "Platform/session/DesktopFacts.h"
#include "Platform/session/DesktopMessages.h"
#include "Platform/session/SystemFacts.h"

namespace halvorn {

// No clipboard, no menu bar, no tint, and nobody knows when the person was last here.
class NullDesktopFacts : public DesktopFacts {
 public:
  std::optional<std::int64_t> nanosecondsSinceLastInput() override { return std::nullopt; }
  std::optional<std::int64_t> clipboardChangeCount() override { return std::nullopt; }
  bool installMenuBarHandler(MenuBarHandler) override { return false; }
  std::optional<int> controlTint() override { return std::nullopt; }
};

// Nobody is told.
class NullDesktopMessages : public DesktopMessages {
 public:
  void tell(const Text&, const Text&) override {}
};

// Version 0.0, older than every release; no debugger, and nothing is known of any file system.
class NullSystemFacts : public SystemFacts {
 public:
  std::optional<int> majorVersion() const override { return std::nullopt; }
  std::optional<int> minorVersion() const override { return std::nullopt; }
  std::optional<int> bugfixVersion() const override { return std::nullopt; }
  std::optional<int> packedVersion() const override { return std::nullopt; }
  double frameworkVersion() const override { return 0.0; }
  bool isDebuggerAttached() const override { return false; }
  FileSystemAnswer fileSystemOf(const Text&) const override { return {-1, ""}; }
};

}  // namespace halvorn
