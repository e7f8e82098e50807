// Digests of bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace halvorn {

using Md5Digest = std::array<std::uint8_t, 16>;  // the highest byte first

class Digests {
 public:
  virtual ~Digests() = default;
  // Thread: any. Fails: nullopt, only where the system has no such digest or is out of memory.
  [[nodiscard]] virtual std::optional<Md5Digest> md5(std::string_view bytes) const = 0;
};

}  // namespace halvorn
