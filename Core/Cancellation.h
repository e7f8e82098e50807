// A wish to stop that one thread states and another looks at from time to time. It is never taken back.
//
// Thread: any; request() may also be called by a signal handler.
#pragma once

#include <atomic>

namespace halvorn {

class Cancellation {
 public:
  Cancellation() = default;
  Cancellation(const Cancellation&) = delete;
  Cancellation& operator=(const Cancellation&) = delete;

  void request() { isRequested_.store(true); }                            // states the wish
  [[nodiscard]] bool isRequested() const { return isRequested_.load(); }  // whether it was stated

 private:
  static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must be able to set it");
  std::atomic<bool> isRequested_ = false;
};

// For work that nobody breaks off.
inline const Cancellation kNeverCanceled;

}  // namespace halvorn
