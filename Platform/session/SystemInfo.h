// What the system says of itself.
#pragma once

#include <optional>

namespace halvorn {

class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  // The three numbers of the system version, each nullopt when the system does not tell. Thread: any.
  [[nodiscard]] virtual std::optional<int> majorVersion() const = 0;
  [[nodiscard]] virtual std::optional<int> minorVersion() const = 0;
  [[nodiscard]] virtual std::optional<int> bugfixVersion() const = 0;
  // The packed binary-coded-decimal version, 0x1068 for 10.6.8; nullopt where the system has none.
  [[nodiscard]] virtual std::optional<int> packedVersion() const = 0;
  // The version number of the application framework, in the numbering that the release predicates know.
  [[nodiscard]] virtual double frameworkVersion() const = 0;
};

}  // namespace halvorn
