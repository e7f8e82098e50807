// Starting a program with nothing of this process clinging to it: default signals, an empty signal mask, the
// descriptors that are named and no other, the environment given. What else differs is the caller's to say.
//
// Thread: any.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <string>
#include <vector>

namespace halvorn {

// Words as the system's calls want them. The words must stay while it is used.
class WordPointers {
 public:
  explicit WordPointers(const std::vector<std::string>& words);
  [[nodiscard]] char* const* get() const { return pointers_.data(); }

 private:
  std::vector<char*> pointers_;
};

// Of this process, as it is now.
[[nodiscard]] std::vector<std::string> ownEnvironment();

// What happens in the child before the program runs, in the order of the calls; then all
// but the standard streams is closed.
class CleanStart {
 public:
  CleanStart();
  ~CleanStart();
  CleanStart(const CleanStart&) = delete;
  CleanStart& operator=(const CleanStart&) = delete;

  void open(int descriptor, const std::string& path, int flags);
  void duplicate(int from, int to);
  void changeFolder(const std::string& path);

  // The program at `path`; the first word is what it is told of its own name.
  // Fails: the system's error number instead of 0; EINVAL for a zero byte in a word.
  [[nodiscard]] int start(const std::string& path, const std::vector<std::string>& words,
                          const std::vector<std::string>& environment, pid_t& pid);

 private:
  posix_spawn_file_actions_t actions_ = {};
  posix_spawnattr_t attributes_ = {};
};

// For a child of fork(), which must do more before it runs a program than the class above can say: undoes what
// this process did to its signals. Nothing is allocated. For its descriptors see ProcessCalls::closeFrom.
void resetSignals();

}  // namespace halvorn
