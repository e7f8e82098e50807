#include "Platform/running/posix/CleanStart.h"

#include <cerrno>
#include <csignal>

#include "Platform/running/posix/SpawnCalls.h"

namespace halvorn {

WordPointers::WordPointers(const std::vector<std::string>& words) {
  pointers_.reserve(words.size() + 1);
  // The calls were declared before there was a const; they change nothing.
  for (const std::string& word : words) pointers_.push_back(const_cast<char*>(word.c_str()));
  pointers_.push_back(nullptr);
}

std::vector<std::string> ownEnvironment() {
  std::vector<std::string> entries;
  for (char** entry = SpawnCalls::environment(); entry != nullptr && *entry != nullptr; ++entry)
    entries.emplace_back(*entry);
  return entries;
}

CleanStart::CleanStart() {
  ::posix_spawn_file_actions_init(&actions_);
  ::posix_spawnattr_init(&attributes_);
  sigset_t signals;
  sigfillset(&signals);
  ::posix_spawnattr_setsigdefault(&attributes_, &signals);
  sigemptyset(&signals);
  ::posix_spawnattr_setsigmask(&attributes_, &signals);
  ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
}

CleanStart::~CleanStart() {
  ::posix_spawnattr_destroy(&attributes_);
  ::posix_spawn_file_actions_destroy(&actions_);
}

void CleanStart::open(int descriptor, const std::string& path, int flags) {
  ::posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, 0);
}

void CleanStart::duplicate(int from, int to) { ::posix_spawn_file_actions_adddup2(&actions_, from, to); }

void CleanStart::changeFolder(const std::string& path) {
  ::posix_spawn_file_actions_addchdir_np(&actions_, path.c_str());
}

int CleanStart::start(const std::string& path, const std::vector<std::string>& words,
                      const std::vector<std::string>& environment, pid_t& pid) {
  for (const std::string& word : words) {
    if (word.find('\0') != std::string::npos) return EINVAL;
  }
  SpawnCalls::inheritStandardStreamsAlone(actions_, attributes_);
  return ::posix_spawn(&pid, path.c_str(), &actions_, &attributes_, WordPointers(words).get(),
                       WordPointers(environment).get());
}

void resetSignals() {
  struct sigaction standard = {};
  standard.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &standard, nullptr);
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace halvorn
