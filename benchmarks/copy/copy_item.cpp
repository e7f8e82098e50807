// copy_item [--filtered|--confined] FROM TO: the installer's copy as a program of its own; on request under the
// system-call filter of the administrator's tool, or within all of its walls.
#include <fcntl.h>
#include <sys/prctl.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/rights/posix/Confinement.h"

namespace {

using halvorn::Confinement::Answer;

bool keepTo(const std::string& from, const std::string& into) {
  using halvorn::SystemCalls::holdItem;
  const auto read = holdItem(AT_FDCWD, from.c_str());
  const auto written = holdItem(AT_FDCWD, into.c_str());
  return read && written &&
         halvorn::Confinement::keepToTrees({{read.get()}, {written.get()}}) == Answer::Done;
}

bool confine(const std::string& option, const std::string& from, const std::string& to) {
  const std::string into = std::filesystem::absolute(to).parent_path();
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && (option != "--confined" || keepTo(from, into)) &&
         halvorn::Confinement::keepToFiles() == Answer::Done;
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::string> words(arguments + 1, arguments + count);
  std::string option;
  if (!words.empty() && (words.front() == "--filtered" || words.front() == "--confined")) {
    option = words.front();
    words.erase(words.begin());
  }
  if (words.size() != 2) {
    std::fputs("usage: copy_item [--filtered|--confined] from to\n", stderr);
    return 64;
  }
  if (!option.empty() && !confine(option, words[0], words[1])) return 2;
  return halvorn::PosixFileManager().copyItem(words[0], words[1]) ? 1 : 0;
}
