// Finding out what a file system can do by trying.
#pragma once

#include <atomic>

namespace halvorn {

// Whether something works here that does not work everywhere. The first answer counts for all; once it
// worked, a single refusal means that single case.
class Trial {
 public:
  [[nodiscard]] bool isWorthTrying() const {
    return state_.load(std::memory_order_relaxed) != State::Refused;
  }
  [[nodiscard]] bool hasWorked() const { return state_.load(std::memory_order_relaxed) == State::Worked; }
  // Whether it had worked before.
  bool worked() { return state_.exchange(State::Worked, std::memory_order_relaxed) == State::Worked; }
  void refused() {
    State expected = State::Unknown;
    state_.compare_exchange_strong(expected, State::Refused);
  }

 private:
  enum class State { Unknown, Worked, Refused };
  std::atomic<State> state_ = State::Unknown;
};

}  // namespace halvorn
