#include "Platform/bundles/linux/LinuxItemFacts.h"

#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/Aliases.h"
#include "Platform/bundles/linux/ResourceFork.h"
#include "Platform/files/linux/FoundItem.h"

namespace halvorn {
namespace {

constexpr std::size_t kHeaderLength = 20;
constexpr std::size_t kMachinePosition = 18;

std::string headerOf(const std::string& path) {
  const auto item = findItem(path);
  return item ? readStart(*item, kHeaderLength).value_or("") : std::string();
}

// A script, or a program of this program's own word size, byte order and machine.
bool canStartHere(const std::string& path) {
  if (::access(path.c_str(), X_OK) != 0) return false;
  const std::string content = headerOf(path);
  const std::string_view header = content;
  const std::string own = headerOf("/proc/self/exe");
  if (header.starts_with("#!")) return true;
  return header.size() == kHeaderLength && header.starts_with(ELFMAG) &&
         header.substr(EI_CLASS, 2) == own.substr(EI_CLASS, 2) &&
         header.substr(kMachinePosition, 2) == own.substr(kMachinePosition, 2);
}

}  // namespace

std::optional<ApplicationItemFlags> LinuxItemFacts::flags(const Text& path) const {
  struct stat item {};
  if (::stat(path.bytes().c_str(), &item) != 0) return std::nullopt;
  ApplicationItemFlags flags;
  flags.isPackage = S_ISDIR(item.st_mode) && Paths::extension(path) == Text("app") &&
                    bundles_.infoDictionary(path).has_value();
  const OptionalText program = flags.isPackage ? bundles_.executablePath(path) : path;
  flags.isNativeApplication =
      program && !(S_ISDIR(item.st_mode) && !flags.isPackage) && canStartHere(program->bytes());
  return flags;
}

std::optional<std::string> LinuxItemFacts::resource(const Text& path, FourCharCode type,
                                                    std::int16_t id) const {
  const auto fork = readResourceFork(path.bytes());
  return fork ? resourceIn(*fork, type, id) : std::nullopt;
}

OptionalText LinuxItemFacts::aliasTarget(const Text& path) const { return targetOfAlias(path); }

}  // namespace halvorn
