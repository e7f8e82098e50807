#include "Sources/InstallProgress.h"

#include <algorithm>
#include <cmath>

#include "Core/Cancellation.h"
#include "Core/ForPeople.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/files/ItemSizes.h"
#include "Platform/running/Clock.h"
#include "Platform/text/LocalizedSizes.h"

namespace halvorn {
namespace {

// What is copied at once says little of how fast the rest goes.
constexpr double kLeastToTell = 2.0;  // seconds

}  // namespace

void InstallProgress::begin() {
  whole_ = 0;
  began_.reset();
}

void InstallProgress::measure(const Text& source, const OptionalText& wrapper, const Cancellation& givenUp) {
  const auto product = services_.items.bytesIn(source, givenUp);
  if (!product) return;
  const auto others = wrapper ? services_.items.bytesIn(*wrapper, givenUp) : std::optional<std::uint64_t>(0);
  if (!givenUp.isRequested()) whole_ = *product + others.value_or(0);
}

std::optional<std::uint64_t> InstallProgress::secondsLeft(std::uint64_t copied, std::uint64_t whole) const {
  const double passed = services_.clock.monotonicSeconds() - *began_;
  if (passed < kLeastToTell || copied <= beganWith_ || copied >= whole) return std::nullopt;
  const double each = passed / static_cast<double>(copied - beganWith_);
  return static_cast<std::uint64_t>(std::max(1.0, std::ceil(each * static_cast<double>(whole - copied))));
}

std::optional<Progress> InstallProgress::progress() {
  const std::uint64_t whole = whole_;
  // A file may have grown since it was looked at.
  const std::uint64_t copied = std::min(services_.copied.bytes(), whole);
  if (copied == 0) return std::nullopt;
  if (!began_) {
    began_ = services_.clock.monotonicSeconds();
    beganWith_ = copied;
  }
  Progress progress;
  progress.share = static_cast<double>(copied) / static_cast<double>(whole);
  const LocalizedSizes::Part amounts = services_.sizes.partOf(copied, whole);
  if (const auto seconds = secondsLeft(copied, whole)) {
    progress.text = formatForPeople(services_.strings.localized("%1$@ of %2$@, about %3$@ s"), amounts.part,
                                    amounts.whole, services_.sizes.number(*seconds));
  } else {
    progress.text = formatForPeople(services_.strings.localized("%1$@ of %2$@"), amounts.part, amounts.whole);
  }
  return progress;
}

}  // namespace halvorn
