#include "Platform/rights/linux/CleanSpawn.h"

#include <spawn.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace halvorn {
namespace {

class Preparation {
 public:
  Preparation(int input, int output) {
    ::posix_spawn_file_actions_init(&actions_);
    // Our folder may have been removed, and pkexec gives up over that.
    ::posix_spawn_file_actions_addchdir_np(&actions_, "/");
    ::posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
    ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~Preparation() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }
  Preparation(const Preparation&) = delete;
  Preparation& operator=(const Preparation&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }
  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t actions_ = {};
  posix_spawnattr_t attributes_ = {};
};

}  // namespace

int spawnClean(std::vector<std::string> words, int input, int output, pid_t& pid) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  // Untranslated complaints. Nothing of the person's environment: pkexec refuses to run under some of it.
  std::array<std::string, 2> environment{"LC_ALL=C", "PATH=/usr/sbin:/usr/bin:/sbin:/bin"};
  std::array<char*, 3> entries{environment[0].data(), environment[1].data(), nullptr};
  const Preparation preparation(input, output);
  return ::posix_spawn(&pid, pointers.front(), preparation.actions(), preparation.attributes(),
                       pointers.data(), entries.data());
}

}  // namespace halvorn
