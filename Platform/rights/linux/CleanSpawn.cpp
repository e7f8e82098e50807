#include "Platform/rights/linux/CleanSpawn.h"

#include <unistd.h>

#include "Platform/running/posix/CleanStart.h"

namespace halvorn {

int spawnClean(const std::vector<std::string>& words, int input, int output, pid_t& pid) {
  CleanStart child;
  // Our folder may have been removed, and pkexec gives up over that.
  child.changeFolder("/");
  child.duplicate(input, STDIN_FILENO);
  child.duplicate(output, STDOUT_FILENO);
  child.duplicate(output, STDERR_FILENO);
  // Untranslated complaints. Nothing of the person's environment: pkexec refuses to run under some of it.
  return child.start(words.front(), words, {"LC_ALL=C", "PATH=/usr/sbin:/usr/bin:/sbin:/bin"}, pid);
}

}  // namespace halvorn
