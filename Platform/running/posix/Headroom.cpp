#include "Platform/running/posix/Headroom.h"

#include <fcntl.h>

#include <latch>
#include <system_error>
#include <thread>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

bool canHaveDescriptors(int count) {
  std::vector<FileDescriptor> held;
  while (count-- > 0) {
    held.emplace_back(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!held.back()) return false;
  }
  return true;
}

bool canHaveThreads(int count) {
  std::vector<std::thread> threads;
  std::latch all(count + 1);
  int missing = count;
  try {
    while (missing > 0) {
      threads.emplace_back([&all] { all.arrive_and_wait(); });
      --missing;
    }
  } catch (const std::system_error&) {
    // There is one less to be had than was asked for.
  }
  all.count_down(missing + 1);
  for (std::thread& thread : threads) thread.join();
  return missing == 0;
}

}  // namespace halvorn
