// Failures as the log writes them, to compare and to print.
#pragma once

#include <optional>
#include <string>

#include "Platform/files/FileFailure.h"

namespace halvorn {

// "No such file or directory: /a/b (look)"; empty when nothing failed.
[[nodiscard]] inline std::string textOf(const std::optional<FileFailure>& failure) {
  if (!failure) return "";
  return failure->reason.bytes() + ": " + failure->path.bytes() + " (" + nameOf(failure->operation) + ")";
}

}  // namespace halvorn
