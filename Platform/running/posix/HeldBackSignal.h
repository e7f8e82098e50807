// A signal that a call of this thread may raise, and whose meaning the call's answer tells as well.
#pragma once

#include <csignal>

namespace halvorn {

// Holds the signal back on this thread, and on those it starts, and swallows one that was raised meanwhile.
// Thread: made and dropped on one.
class HeldBackSignal {
 public:
  explicit HeldBackSignal(int signal);
  ~HeldBackSignal();
  HeldBackSignal(const HeldBackSignal&) = delete;
  HeldBackSignal& operator=(const HeldBackSignal&) = delete;

 private:
  const int signal_;
  sigset_t before_;
  bool wasPending_ = false;
};

}  // namespace halvorn
