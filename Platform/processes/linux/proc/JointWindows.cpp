#include "Platform/processes/linux/proc/JointWindows.h"

#include <algorithm>
#include <utility>

#include "Platform/processes/linux/proc/ProcessHold.h"

namespace halvorn {
namespace {

// Each numbers its windows for itself.
constexpr WindowSystem::WindowNumber kOfTheSecond = WindowSystem::WindowNumber{1} << 63U;

class BothSources : public RunLoop::Source {
 public:
  BothSources(std::unique_ptr<RunLoop::Source> first, std::unique_ptr<RunLoop::Source> second)
      : first_(std::move(first)), second_(std::move(second)) {}

 private:
  const std::unique_ptr<RunLoop::Source> first_;
  const std::unique_ptr<RunLoop::Source> second_;
};

}  // namespace

std::vector<pid_t> JointWindows::owners() {
  std::vector<pid_t> result = first_.owners();
  for (const pid_t pid : second_.owners()) {
    if (std::find(result.begin(), result.end(), pid) == result.end()) result.push_back(pid);
  }
  return result;
}

std::optional<pid_t> JointWindows::activeOwner() {
  // To the second one a window of the first is none: it may still name the one that was active before.
  return (first_.tellsActiveWindow() ? first_ : second_).activeOwner();
}

std::vector<WindowSystem::WindowNumber> JointWindows::windowsOf(const ProcessHold& process) {
  std::vector<WindowNumber> result = first_.windowsOf(process);
  for (const WindowNumber window : second_.windowsOf(process)) result.push_back(window | kOfTheSecond);
  return result;
}

int JointWindows::closeWindows(const ProcessHold& process) {
  return first_.closeWindows(process) + second_.closeWindows(process);
}

void JointWindows::activate(const ProcessHold& process, BringForward windows) {
  const auto owners = first_.owners();
  const bool isOfTheFirst = std::find(owners.begin(), owners.end(), process.pid()) != owners.end();
  (isOfTheFirst ? first_ : second_).activate(process, windows);
}

void JointWindows::setVisible(const ProcessHold& process, Visible visible) {
  first_.setVisible(process, visible);
  second_.setVisible(process, visible);
}

std::optional<bool> JointWindows::isHidden(const ProcessHold& process) {
  const std::optional<bool> first = first_.isHidden(process);
  const std::optional<bool> second = second_.isHidden(process);
  return first && second ? *first && *second : first ? first : second;
}

void JointWindows::sendEmptyMessage(const ProcessHold& process) {
  first_.sendEmptyMessage(process);
  second_.sendEmptyMessage(process);
}

std::unique_ptr<RunLoop::Source> JointWindows::watch(RunLoop& loop, Changes changes) {
  auto first = first_.watch(loop, changes);
  auto second = second_.watch(loop, changes);
  if (!first && !second) return nullptr;
  return std::make_unique<BothSources>(std::move(first), std::move(second));
}

}  // namespace halvorn
