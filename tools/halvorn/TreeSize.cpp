#include "tools/halvorn/TreeSize.h"

#include <sys/stat.h>

#include <filesystem>
#include <set>
#include <utility>

namespace halvorn {
namespace {

constexpr std::uint64_t kBlock = 4096;

}  // namespace

std::uint64_t sizeOfTree(const std::string& path) {
  namespace fs = std::filesystem;
  std::set<std::pair<dev_t, ino_t>> counted;
  std::uint64_t sum = 0;
  const auto count = [&](const fs::path& item) {
    struct stat facts {};
    if (::lstat(item.c_str(), &facts) != 0) return;
    const bool hasNames = S_ISREG(facts.st_mode) && facts.st_nlink > 1;
    if (hasNames && !counted.emplace(facts.st_dev, facts.st_ino).second) return;
    const auto size = S_ISREG(facts.st_mode) ? static_cast<std::uint64_t>(facts.st_size) : 1;
    sum += (size + kBlock - 1) / kBlock * kBlock;
  };
  count(path);
  std::error_code problem;
  const auto options = fs::directory_options::skip_permission_denied;
  for (auto entry = fs::recursive_directory_iterator(path, options, problem);
       !problem && entry != fs::recursive_directory_iterator(); entry.increment(problem))
    count(entry->path());
  return sum;
}

}  // namespace halvorn
