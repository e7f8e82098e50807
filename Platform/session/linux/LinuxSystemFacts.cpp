#include "Platform/session/linux/LinuxSystemFacts.h"

#include <sys/utsname.h>

#include <charconv>
#include <string>

namespace halvorn {
namespace {

// In the numbering that the release predicates know, the number of a desktop of which all of them hold.
constexpr double kFrameworkVersion = 1671.6;

Text releaseOfThisSystem() {
  utsname names = {};
  return ::uname(&names) == 0 ? Text(names.release) : Text();
}

}  // namespace

LinuxSystemFacts::LinuxSystemFacts() : LinuxSystemFacts(releaseOfThisSystem()) {}

LinuxSystemFacts::LinuxSystemFacts(const Text& release) {
  const std::string text = release.bytes();
  const char* position = text.data();
  const char* const end = position + text.size();
  for (std::optional<int>* const part : {&major_, &minor_, &bugfix_}) {
    int number = 0;
    const auto [stop, error] = std::from_chars(position, end, number);
    if (error != std::errc() || number < 0) return;
    *part = number;
    if (stop == end || *stop != '.') return;
    position = stop + 1;
  }
}

double LinuxSystemFacts::frameworkVersion() const { return kFrameworkVersion; }

FileSystemAnswer LinuxSystemFacts::fileSystemOf(const Text& path) const {
  return fileSystems_.statusOf(path);
}

}  // namespace halvorn
