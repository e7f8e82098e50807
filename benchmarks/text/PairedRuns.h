// Two ways to do the same, measured in turn, in processor time.
//
// Every pair of runs gives one ratio, so what slows the machine for a while slows both; the median of the
// ratios and of the times is what counts. Each run is repeated until it takes long enough to be measured.
#pragma once

#include <time.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

namespace halvorn {

struct PairedResult {
  double ourNanoseconds = 0;  // for one call
  double theirNanoseconds = 0;
  double ratio = 0;          // theirs by ours: above 1 ours is ahead
  std::vector<double> ours;  // what the medians are of, in turn
  std::vector<double> theirs;
};

class PairedRuns {
 public:
  using Call = std::function<std::size_t()>;

  PairedRuns(int pairs, double secondsPerRun) : pairs_(pairs), secondsPerRun_(secondsPerRun) {}

  [[nodiscard]] PairedResult measure(const Call& ours, const Call& theirs) {
    const std::size_t ourCalls = callsPerRun(ours);
    const std::size_t theirCalls = callsPerRun(theirs);
    std::vector<double> our, their, ratios;
    for (int i = 0; i < pairs_; ++i) {
      // Who goes first changes from pair to pair.
      double first = 0, second = 0;
      if (i % 2 == 0) {
        first = nanosecondsPerCall(ours, ourCalls);
        second = nanosecondsPerCall(theirs, theirCalls);
      } else {
        second = nanosecondsPerCall(theirs, theirCalls);
        first = nanosecondsPerCall(ours, ourCalls);
      }
      our.push_back(first);
      their.push_back(second);
      ratios.push_back(second / first);
    }
    return {median(our), median(their), median(ratios), our, their};
  }

  // So that no call can be left out.
  [[nodiscard]] std::size_t total() const { return total_; }

 private:
  static double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
  }
  // Of this thread alone: what other programs take of the machine does not count.
  static double processorNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
  }
  double nanosecondsPerCall(const Call& call, std::size_t calls) {
    const double start = processorNanoseconds();
    for (std::size_t i = 0; i < calls; ++i) total_ += call();
    return (processorNanoseconds() - start) / static_cast<double>(calls);
  }
  std::size_t callsPerRun(const Call& call) {
    const double once = std::min(nanosecondsPerCall(call, 1), nanosecondsPerCall(call, 1));
    return std::max<std::size_t>(1, static_cast<std::size_t>(secondsPerRun_ * 1e9 / std::max(once, 1.0)));
  }

  int pairs_;
  double secondsPerRun_;
  std::size_t total_ = 0;
};

}  // namespace halvorn
