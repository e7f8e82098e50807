#include "Platform/processes/linux/proc/TerminateRequest.h"

#include <signal.h>

#include <algorithm>

#include "Platform/processes/linux/proc/ProcessHold.h"

namespace halvorn {
namespace {

constexpr double kSecondsToAnswer = 1.0;
// More for one whose windows have gone: it may be saving.
constexpr double kSecondsToFinish = 2.0;

}  // namespace

void TerminateRequest::carryOn(const ProcessHold& process, WindowSystem& windows, double now) {
  const std::lock_guard lock(mutex_);
  if (stage_ == Stage::NotBegun) {
    begin(process, windows, now);
  } else if (stage_ != Stage::Done && now >= nextLook_) {
    nextLook_ = now + kSecondsToFinish;
    lookForAnswer(process, windows);
  }
}

void TerminateRequest::begin(const ProcessHold& process, WindowSystem& windows, double now) {
  windowsBefore_ = windows.windowsOf(process);
  if (windows.closeWindows(process) == 0) {
    sendSignal(process);
    return;
  }
  stage_ = Stage::WindowsAsked;
  nextLook_ = now + kSecondsToAnswer;
}

void TerminateRequest::lookForAnswer(const ProcessHold& process, WindowSystem& windows) {
  const auto present = windows.windowsOf(process);
  const bool hasOpenedOne = std::any_of(present.begin(), present.end(), [&](const auto window) {
    return std::find(windowsBefore_.begin(), windowsBefore_.end(), window) == windowsBefore_.end();
  });
  const bool hasClosedOne = present.size() < windowsBefore_.size();
  if (hasOpenedOne) {
    stage_ = Stage::Done;  // it asks something; the answer is the person's
  } else if (hasClosedOne && stage_ == Stage::WindowsAsked) {
    stage_ = Stage::WindowsClosing;
  } else {
    sendSignal(process);
  }
}

// A program that ended at the closing has followed the request, and one that may not be signalled was asked.
void TerminateRequest::sendSignal(const ProcessHold& process) {
  process.sendSignal(SIGTERM);
  stage_ = Stage::Done;
}

}  // namespace halvorn
