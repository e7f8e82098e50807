#include "Platform/running/posix/PosixWorkers.h"

#include <system_error>
#include <utility>

namespace halvorn {

void PosixWorkers::finish() {
  // A task may start another while this waits, so the list is asked anew each time.
  for (;;) {
    std::list<Worker> last;
    {
      const std::lock_guard lock(mutex_);
      if (workers_.empty()) return;
      last.splice(last.begin(), workers_, workers_.begin());
    }
    last.front().thread.join();
  }
}

void PosixWorkers::detach(std::function<void()> task) {
  std::list<Worker> ended;
  bool isRefused = false;
  {
    const std::lock_guard lock(mutex_);
    for (auto worker = workers_.begin(); worker != workers_.end();) {
      const auto next = std::next(worker);
      if (worker->isDone->load()) ended.splice(ended.end(), workers_, worker);
      worker = next;
    }
    auto isDone = std::make_shared<std::atomic<bool>>(false);
    try {
      workers_.push_back({std::thread([task, isDone] {
                            task();
                            isDone->store(true);
                          }),
                          isDone});
    } catch (const std::system_error&) {
      isRefused = true;
    }
  }
  for (Worker& worker : ended) worker.thread.join();
  if (isRefused) task();
}

}  // namespace halvorn
