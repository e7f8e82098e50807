#include "Platform/rights/posix/CopiedLine.h"

#include <unistd.h>

#include <charconv>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

constexpr std::string_view kBegins = "copied ";

}  // namespace

void tellCopied(std::uint64_t bytes) {
  const std::string line = std::string(kBegins) + std::to_string(bytes) + "\n";
  // Whoever asked may have gone; the copy goes on.
  (void)!retried([&] { return ::write(STDOUT_FILENO, line.data(), line.size()); });
}

std::optional<std::uint64_t> bytesInCopiedLine(std::string_view line) {
  if (!line.starts_with(kBegins)) return std::nullopt;
  line.remove_prefix(kBegins.size());
  std::uint64_t bytes = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), bytes);
  const bool isWhole = error == std::errc() && end == line.data() + line.size();
  return isWhole ? std::optional(bytes) : std::nullopt;
}

}  // namespace halvorn
