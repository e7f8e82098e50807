#include <fcntl.h>
#include <sys/stat.h>

#include <charconv>
#include <sstream>

#include "Platform/files/posix/BoundedFile.h"
#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

constexpr std::size_t kLongestTable = std::size_t{16} << 20;
constexpr std::size_t kLongestDescription = 4096;  // of one open file

struct Mount {
  std::string number;
  std::string device;  // alike for all mounts of one file system
  std::string point;
};

// Blanks, line ends and backslashes stand as "\040".
std::string unescaped(const std::string& word) {
  std::string plain;
  for (std::size_t at = 0; at < word.size(); ++at) {
    unsigned byte = 0;
    const char* const digits = word.data() + at + 1;
    const bool isEscaped = word[at] == '\\' && word.size() - at > 3 &&
                           std::from_chars(digits, digits + 3, byte, 8).ptr == digits + 3;
    plain.push_back(isEscaped ? static_cast<char>(byte) : word[at]);
    if (isEscaped) at += 3;
  }
  return plain;
}

std::optional<std::vector<Mount>> mountsInSight() {
  const auto table = readRegularFile("/proc/self/mountinfo", kLongestTable);
  if (!table) return std::nullopt;
  std::vector<Mount> mounts;
  std::istringstream lines(*table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    Mount mount;
    std::string ignored;
    if (!(words >> mount.number >> ignored >> mount.device >> ignored >> mount.point)) return std::nullopt;
    mount.point = unescaped(mount.point);
    mounts.push_back(std::move(mount));
  }
  return mounts;
}

// The number of the mount that the item was reached through; older kernels say it here only.
std::optional<std::string> numberOfMount(int item) {
  const std::string path = "/proc/self/fdinfo/" + std::to_string(item);
  std::istringstream words(readRegularFile(path, kLongestDescription).value_or(""));
  for (std::string word, number; words >> word;) {
    if (word == "mnt_id:" && words >> number) return number;
  }
  return std::nullopt;
}

}  // namespace

std::optional<SystemCalls::ItemNumbers> SystemCalls::topsOfMounts(int item) {
  const auto mounts = mountsInSight();
  const auto own = numberOfMount(item);
  if (!mounts || !own) return std::nullopt;
  std::string device;
  for (const Mount& mount : *mounts) {
    if (mount.number == *own) device = mount.device;
  }
  if (device.empty()) return std::nullopt;
  ItemNumbers tops;
  for (const Mount& mount : *mounts) {
    if (mount.device != device) continue;
    const FileDescriptor top = holdItem(AT_FDCWD, mount.point.c_str());
    struct stat facts {};
    // Another one may be mounted over it, or its path may have been given to something else.
    if (!top || numberOfMount(top.get()) != mount.number || ::fstat(top.get(), &facts) != 0)
      return std::nullopt;
    tops.emplace(facts.st_dev, facts.st_ino);
  }
  return tops;
}

}  // namespace halvorn
