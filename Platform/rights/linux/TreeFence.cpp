#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "Platform/rights/posix/Confinement.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn::Confinement {
namespace {

// Before the second version nothing could be moved from one folder into another.
constexpr long kFirstVersionThatMoves = 2;
constexpr long kFirstVersionThatCutsOff = 3;
constexpr std::uint64_t kCuttingOff = std::uint64_t{1} << 14;  // the headers may be older

constexpr std::uint64_t kReadingFiles = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr std::uint64_t kReading = kReadingFiles | LANDLOCK_ACCESS_FS_READ_DIR;
// Not among them: running programs, and making devices.
constexpr std::uint64_t kWriting = kReading | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                   LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                   LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_SYM |
                                   LANDLOCK_ACCESS_FS_REFER | kCuttingOff;
constexpr std::uint64_t kAll =
    kWriting | LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK;

class Ruleset {
 public:
  explicit Ruleset(std::uint64_t handled) : handled_(handled) {
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = handled;
    ruleset_ = FileDescriptor(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
  }

  [[nodiscard]] bool allow(const std::vector<int>& items, std::uint64_t what) const {
    for (const int item : items) {
      if (!allowOne(item, what)) return false;
    }
    return true;
  }
  [[nodiscard]] bool allowOne(int item, std::uint64_t what) const {
    struct stat facts {};
    if (::fstat(item, &facts) != 0) return false;
    // What is neither is never opened.
    if (!S_ISDIR(facts.st_mode) && !S_ISREG(facts.st_mode)) return true;
    if (S_ISREG(facts.st_mode)) what &= kReadingFiles;
    const landlock_path_beneath_attr rule{.allowed_access = what & handled_, .parent_fd = item};
    return ::syscall(SYS_landlock_add_rule, ruleset_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
  }
  [[nodiscard]] bool apply() const {
    return ruleset_ && ::syscall(SYS_landlock_restrict_self, ruleset_.get(), 0) == 0;
  }

 private:
  std::uint64_t handled_;
  FileDescriptor ruleset_;
};

}  // namespace

Answer keepToTrees(const Trees& trees) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return Answer::NotHere;  // a sanitized program looks for its symbols
#endif
  const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < kFirstVersionThatMoves) return Answer::NotHere;
  const Ruleset ruleset(version < kFirstVersionThatCutsOff ? kAll & ~kCuttingOff : kAll);
  // This process' own entry in the process table, which says what is mounted.
  const FileDescriptor process(::open("/proc/self", O_PATH | O_DIRECTORY | O_CLOEXEC));
  const bool isDone = (!process || ruleset.allowOne(process.get(), kReading)) &&
                      ruleset.allow(trees.toRead, kReading) && ruleset.allow(trees.toWrite, kWriting) &&
                      ruleset.apply();
  return isDone ? Answer::Done : Answer::Failed;
}

}  // namespace halvorn::Confinement
