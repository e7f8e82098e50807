// What the system says of itself, of this process and of its file systems. Thread: any.
#pragma once

#include <optional>

#include "Core/Text.h"

namespace halvorn {

struct FileSystemAnswer {  // of one path
  int status = 0;          // 0, or the negative answer of the system's call
  Text typeName;           // "ext4", as the system names it; "" when it does not
};

class SystemFacts {
 public:
  virtual ~SystemFacts() = default;

  // The three numbers of the system version, each nullopt when the system does not tell.
  [[nodiscard]] virtual std::optional<int> majorVersion() const = 0;
  [[nodiscard]] virtual std::optional<int> minorVersion() const = 0;
  [[nodiscard]] virtual std::optional<int> bugfixVersion() const = 0;
  // The packed binary-coded-decimal version, 0x1068 for 10.6.8; nullopt where the system has none.
  [[nodiscard]] virtual std::optional<int> packedVersion() const = 0;
  // The version number of the application framework, in the numbering that the release predicates know.
  [[nodiscard]] virtual double frameworkVersion() const = 0;

  // Whether a debugger is attached to this process right now; false when the system does not tell.
  [[nodiscard]] virtual bool isDebuggerAttached() const = 0;
  // The file system that holds the item at the path; links are followed.
  [[nodiscard]] virtual FileSystemAnswer fileSystemOf(const Text& path) const = 0;
};

}  // namespace halvorn
