// What the administrator's rights would hide from a test.
#pragma once

#include <unistd.h>

#include <filesystem>

namespace halvorn {

// While it lives, a test that runs as the administrator has the rights of an ordinary user, to
// whom the folder and all in it belong. For anybody else it changes nothing. Thread: one at a
// time; all threads of the process change.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const std::filesystem::path& folder) {
    if (::geteuid() != 0) return;
    static_cast<void>(::lchown(folder.c_str(), kNobody, kNobody));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      static_cast<void>(::lchown(entry.path().c_str(), kNobody, kNobody));
    }
    isChanged_ = ::setegid(kNobody) == 0 && ::seteuid(kNobody) == 0;
  }
  ~OrdinaryUser() {
    if (!isChanged_) return;
    static_cast<void>(::seteuid(0));
    static_cast<void>(::setegid(0));
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  bool isChanged_ = false;
};

}  // namespace halvorn
