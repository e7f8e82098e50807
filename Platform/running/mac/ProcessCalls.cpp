#include "Platform/running/posix/ProcessCalls.h"

#include <crt_externs.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <system_error>

namespace halvorn::ProcessCalls {

std::string wordsFor(int error) { return std::generic_category().message(error); }

bool clearEnvironment() {
  static char* none[] = {nullptr};
  *::_NSGetEnviron() = none;
  return true;
}

void closeFrom(int first) {
  constexpr rlim_t usual = 1 << 16;
  constexpr rlim_t most = 1 << 20;
  rlimit limit = {};
  const bool isKnown = ::getrlimit(RLIMIT_NOFILE, &limit) == 0;
  const int end = static_cast<int>(isKnown ? std::clamp(limit.rlim_cur, usual, most) : usual);
  for (int descriptor = first; descriptor < end; ++descriptor) ::close(descriptor);
}

}  // namespace halvorn::ProcessCalls
