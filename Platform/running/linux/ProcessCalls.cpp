#include "Platform/running/posix/ProcessCalls.h"

#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <system_error>

namespace halvorn::ProcessCalls {

std::string wordsFor(int error) {
#ifdef __GLIBC__
  const char* const words = ::strerrordesc_np(error);
  return words != nullptr ? words : "Error " + std::to_string(error);
#else
  return std::generic_category().message(error);
#endif
}

bool clearEnvironment() { return ::clearenv() == 0; }

void closeFrom(int first) {
  if (::close_range(static_cast<unsigned>(first), ~0U, 0) == 0) return;
  // Older kernels. Whoever lowered the limit may have opened something above it before.
  constexpr rlim_t usual = 1 << 16;
  constexpr rlim_t most = 1 << 20;
  rlimit limit = {};
  const bool isKnown = ::getrlimit(RLIMIT_NOFILE, &limit) == 0;
  const int end = static_cast<int>(isKnown ? std::clamp(limit.rlim_cur, usual, most) : usual);
  for (int descriptor = first; descriptor < end; ++descriptor) ::close(descriptor);
}

}  // namespace halvorn::ProcessCalls
