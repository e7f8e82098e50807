#include "Platform/running/posix/ResourceLimits.h"

#include <algorithm>

namespace halvorn {

rlimit raiseLimit(int resource, rlim_t least) {
  // The C library of Linux has a type of its own for the names of resources.
  const auto which = static_cast<decltype(RLIMIT_NOFILE)>(resource);
  rlimit before{};
  if (::getrlimit(which, &before) != 0 || before.rlim_cur >= least) return before;
  // Who has the rights raises both.
  const rlimit wanted{least, std::max(before.rlim_max, least)};
  if (::setrlimit(which, &wanted) == 0) return before;
  const rlimit possible{std::min(before.rlim_max, least), before.rlim_max};
  ::setrlimit(which, &possible);
  return before;
}

}  // namespace halvorn
