// How far the copy of an installation has come, in a share and in words.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "Core/ByteCounter.h"
#include "Core/Text.h"
#include "Platform/window/Views.h"

namespace halvorn {

class Cancellation;
class Clock;
class ItemSizes;
class LocalizedSizes;
class LocalizedStrings;

struct InstallProgressServices {
  const ByteCounter& copied;  // what has been copied since the installation began
  const ItemSizes& items;
  const LocalizedSizes& sizes;
  const LocalizedStrings& strings;
  Clock& clock;
};

class InstallProgress {
 public:
  explicit InstallProgress(const InstallProgressServices& services) : services_(services) {}

  // A new installation; nothing is known of it. Thread: main.
  void begin();
  // Looks how much there is to copy. Thread: a worker.
  void measure(const Text& source, const OptionalText& wrapper, const Cancellation& givenUp);
  // "1.2 of 2.0 GB, about 10 s": nullopt before something has been copied and as long as it is not known how much there
  // is. How long it takes is left out until it can be told. Thread: main.
  [[nodiscard]] std::optional<Progress> progress();

 private:
  [[nodiscard]] std::optional<std::uint64_t> secondsLeft(std::uint64_t copied, std::uint64_t whole) const;

  InstallProgressServices services_;
  std::atomic<std::uint64_t> whole_ = 0;  // 0: not known
  std::optional<double> began_;           // when something was first seen copied
  std::uint64_t beganWith_ = 0;
};

}  // namespace halvorn
