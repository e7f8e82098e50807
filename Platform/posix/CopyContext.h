// What everybody who works at one copy shares.
#pragma once

#include <atomic>

#include "Platform/posix/CopyQueue.h"
#include "Platform/posix/FileMetadata.h"
#include "Platform/posix/HardLinks.h"
#include "Platform/posix/Person.h"

namespace halvorn {

struct CopyRules {
  const Person* readAs = nullptr;  // whose rights open the originals; null: this process' own
  Ownership ownership = Ownership::Kept;
};

// Whether something works here that does not work everywhere. The first answer counts for all; once it
// worked, a single refusal means that single case.
class Trial {
 public:
  [[nodiscard]] bool isWorthTrying() const {
    return state_.load(std::memory_order_relaxed) != State::Refused;
  }
  void worked() { state_.store(State::Worked, std::memory_order_relaxed); }
  void refused() {
    State expected = State::Unknown;
    state_.compare_exchange_strong(expected, State::Refused);
  }

 private:
  enum class State { Unknown, Worked, Refused };
  std::atomic<State> state_ = State::Unknown;
};

struct CopyContext {
  CopyContext(const CopyRules& theRules, int targetTop)
      : rules(theRules), giver(theRules.ownership), links(targetTop) {}

  // The first failure ends the copy: everybody looks here before going on.
  void fail() { queue.stop(); }
  [[nodiscard]] bool hasFailed() const { return queue.isStopped(); }

  // Something had to be fetched from a disk. When that goes on, more threads are of use: they wait side by
  // side.
  void sawMissing() {
    if (missing_.fetch_add(1, std::memory_order_relaxed) + 1 == missingWhenCold)
      queue.allowWorkers(workersWhenCold);
  }
  [[nodiscard]] bool isCold() const { return missing_.load(std::memory_order_relaxed) >= missingWhenCold; }

  const CopyRules rules;
  const MetadataGiver giver;
  HardLinks links;
  Trial clones;        // sharing the blocks of a file between two files
  Trial quietReading;  // reading without noting the time of the access
  CopyQueue queue;

 private:
  static constexpr unsigned missingWhenCold = 8;
  static constexpr unsigned workersWhenCold = 8;
  std::atomic<unsigned> missing_ = 0;
};

}  // namespace halvorn
