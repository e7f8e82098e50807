// How much of the processor the reading of one document may take.
//
//   const ReadingBudget budget;
//   while (... && !budget.isSpent()) ...
#pragma once

#include <functional>

namespace halvorn {

class ReadingBudget {
 public:
  // Seconds of processor time that the calling thread has used.
  using Meter = std::function<double()>;

  static constexpr double kUsual = 0.25;
  // Counts from now on.
  explicit ReadingBudget(double seconds = kUsual, Meter meter = ofThisThread);

  [[nodiscard]] bool isSpent() const { return meter_() >= end_; }

  [[nodiscard]] static double ofThisThread();

 private:
  Meter meter_;
  double end_;
};

}  // namespace halvorn
