#include "tests/support/SharedApplications.h"

#include <grp.h>
#include <sys/mount.h>
#include <unistd.h>

#include "tests/support/OwnMounts.h"

namespace halvorn {
namespace {

constexpr uid_t kNobody = 65534;

// Whom nobody lets write there anyway.
bool becomeOrdinaryUser() {
  return ::setgroups(0, nullptr) == 0 && ::setresgid(kNobody, kNobody, kNobody) == 0 &&
         ::setresuid(kNobody, kNobody, kNobody) == 0;
}

std::optional<std::string> hide() {
  if (::geteuid() != 0) return std::nullopt;
  const auto reason = enterOwnMounts();
  if (reason) return reason;
  if (::mount("tmpfs", "/opt", "tmpfs", MS_RDONLY, "mode=755") == 0) return std::nullopt;
  return "the folder of all users' applications cannot be hidden";
}

}  // namespace

std::optional<std::string> hideSharedApplications() {
  static const auto problem = hide();
  return problem;
}

std::optional<std::string> stayOutOfSharedApplications(const std::string& neededFolder) {
  static const auto problem = [&]() -> std::optional<std::string> {
    const auto reason = hideSharedApplications();
    if (!reason || !becomeOrdinaryUser()) return reason;
    if (::access(neededFolder.c_str(), R_OK | X_OK) == 0) return std::nullopt;
    return *reason + "; nor can an ordinary user read " + neededFolder;
  }();
  return problem;
}

}  // namespace halvorn
