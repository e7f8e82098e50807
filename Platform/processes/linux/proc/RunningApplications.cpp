#include "Platform/processes/linux/proc/RunningApplications.h"

#include <sys/epoll.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/WindowSystem.h"

namespace halvorn {
namespace {

std::uint64_t ticksSinceSystemStart() {
  timespec time{};
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  const auto perSecond = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
  return static_cast<std::uint64_t>(time.tv_sec) * perSecond +
         static_cast<std::uint64_t>(time.tv_nsec) * perSecond / 1'000'000'000u;
}

}  // namespace

RunningApplications::RunningApplications(const ProcFiles& files, const Bundles& bundles,
                                         WindowSystem& windows, DesktopSession session)
    : files_(files),
      programs_(files, bundles),
      windows_(windows),
      session_(std::move(session)),
      clients_(session_.waylandSocket, files),
      user_(::geteuid()),
      ends_(::epoll_create1(EPOLL_CLOEXEC)) {}

RunningApplications::~RunningApplications() = default;

std::vector<HeldApplicationPointer> RunningApplications::all() {
  // The kernel tells which of those that are held have ended, so nothing is asked of each.
  lookForEnds();
  Walk walk;
  holdOwners(walk);
  for (const pid_t pid : notHeld(files_.pids())) hold(pid, Wanted::InBundle, walk);
  lookForEnds();
  std::vector<HeldApplicationPointer> result;
  {
    const std::lock_guard lock(mutex_);
    knowsWhatRan_ = true;
    result.reserve(held_.size());
    for (const auto& [pid, application] : held_) result.push_back(application);
  }
  std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) {
    return std::pair(a->number.high, a->number.low) < std::pair(b->number.high, b->number.low);
  });
  return result;
}

std::vector<pid_t> RunningApplications::notHeld(std::vector<pid_t> pids) {
  const std::lock_guard lock(mutex_);
  std::erase_if(pids, [&](pid_t pid) { return held_.contains(pid); });
  return pids;
}

void RunningApplications::lookAtWindows() {
  Walk walk;
  holdOwners(walk);
}

void RunningApplications::holdOwners(Walk& walk) {
  for (const pid_t pid : windows_.owners()) hold(pid, Wanted::AnyProgram, walk);
}

HeldApplicationPointer RunningApplications::withPid(pid_t pid) {
  if (pid == ::getpid()) return thisProgram();
  Walk walk;
  if (auto application = hold(pid, Wanted::InBundle, walk)) return application;
  const std::vector<pid_t> owners = windows_.owners();
  const bool ownsWindows = std::find(owners.begin(), owners.end(), pid) != owners.end();
  return ownsWindows ? hold(pid, Wanted::AnyProgram, walk) : nullptr;
}

HeldApplicationPointer RunningApplications::withNumber(ProcessSerialNumber number) {
  const auto application = knownWithPid(static_cast<pid_t>(number.low));
  return application && application->number == number ? application : nullptr;
}

std::vector<bool> RunningApplications::areHeld(const std::vector<ProcessSerialNumber>& numbers) {
  lookForEnds();
  std::vector<bool> answers;
  answers.reserve(numbers.size());
  const std::lock_guard lock(mutex_);
  for (const ProcessSerialNumber number : numbers) {
    const auto found = held_.find(static_cast<pid_t>(number.low));
    answers.push_back(found != held_.end() && found->second->number == number);
  }
  return answers;
}

std::uint64_t RunningApplications::endsSeen() {
  lookForEnds();
  const std::lock_guard lock(mutex_);
  return endsSeen_;
}

HeldApplicationPointer RunningApplications::thisProgram() {
  Walk walk;
  return hold(::getpid(), Wanted::AnyProgram, walk);
}

HeldApplicationPointer RunningApplications::knownWithPid(pid_t pid) {
  HeldApplicationPointer application;
  {
    const std::lock_guard lock(mutex_);
    const auto found = held_.find(pid);
    if (found == held_.end()) return nullptr;
    application = found->second;
  }
  if (!application->hold.hasEnded()) return application;
  retire(application);
  return nullptr;
}

HeldApplicationPointer RunningApplications::hold(pid_t pid, Wanted wanted, Walk& walk) {
  if (pid <= 1) return nullptr;
  if (auto known = knownWithPid(pid)) return known;
  // A first look without a hold: most processes are none of ours, and descriptors are few.
  if (wanted == Wanted::InBundle && !programs_.mayBeInBundle(pid)) return nullptr;
  PidDescriptor descriptor(pid);
  const auto stat = files_.stat(pid);
  if (!stat) return nullptr;
  ProcessHold certainty(files_, pid, stat->startTicks, std::move(descriptor));
  std::optional<Program> program = wanted == Wanted::InBundle ? programs_.programInBundle(pid, walk.programs)
                                                              : programs_.anyProgram(pid, walk.programs);
  const bool isOurs = program && belongsHere(pid, wanted, walk);
  // As long as it has not ended, all that was read is about the process that is held.
  if (!isOurs || certainty.hasEnded()) return nullptr;
  return add(std::move(certainty), std::move(*program));
}

bool RunningApplications::belongsHere(pid_t pid, Wanted wanted, Walk& walk) const {
  const auto status = files_.status(pid);
  if (!status || status->realUser != user_ || status->effectiveUser != user_) return false;
  // What shows a window on our display is in our session, whatever its environment says.
  return wanted == Wanted::AnyProgram || pid == ::getpid() || isOfThisSession(pid, walk);
}

bool RunningApplications::isOfThisSession(pid_t pid, Walk& walk) const {
  if (!session_.isNamed()) return true;
  // Who is connected is proof; what the environment says, of those that are not, is no more than a hint.
  if (!walk.clients) walk.clients = clients_.look();
  const Membership membership = walk.clients->of(pid);
  if (membership != Membership::Untold) return membership == Membership::Here;
  return !session_.differsFrom(DesktopSession::from(files_.environment(pid)));
}

HeldApplicationPointer RunningApplications::add(ProcessHold hold, Program program) {
  const pid_t pid = hold.pid();
  const std::uint64_t startTicks = hold.startTicks();
  HeldApplicationPointer application;
  {
    const std::lock_guard lock(mutex_);
    if (const auto found = held_.find(pid); found != held_.end()) {
      // Another thread may have been faster; both hold the same process, since it has not ended.
      HeldApplicationPointer other = found->second;
      if (!other->hold.hasEnded()) return other;
      retireLocked(other);
    }
    // A process id can come back within one tick of the clock; the number must not.
    auto high = static_cast<std::uint32_t>(startTicks);
    while (!given_.emplace(pid, high).second) ++high;
    application = std::make_shared<HeldApplication>(
        ProcessSerialNumber{high, static_cast<std::uint32_t>(pid)}, std::move(hold), std::move(program));
    held_[pid] = application;
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = pid;
    // Refused without a descriptor, and when this user waits for too many things already.
    if (::epoll_ctl(ends_.get(), EPOLL_CTL_ADD, application->hold.descriptor(), &event) != 0) {
      untold_.push_back(pid);
    }
    if (isNewsLocked(startTicks)) noteLocked(Event::Launched);
  }
  tellWaiting();
  return application;
}

void RunningApplications::retire(const HeldApplicationPointer& application) {
  {
    const std::lock_guard lock(mutex_);
    const auto found = held_.find(application->pid);
    if (found == held_.end() || found->second != application) return;
    retireLocked(application);
  }
  tellWaiting();
}

void RunningApplications::retireLocked(const HeldApplicationPointer& application) {
  // Somebody may keep the application, and with it the descriptor, which would be ready for ever.
  ::epoll_ctl(ends_.get(), EPOLL_CTL_DEL, application->hold.descriptor(), nullptr);
  held_.erase(application->pid);
  std::erase(untold_, application->pid);
  ++endsSeen_;
  noteLocked(Event::Ended);
}

void RunningApplications::lookForEnds() {
  epoll_event events[64];
  for (;;) {
    const int count = ::epoll_wait(ends_.get(), events, std::size(events), 0);
    if (count <= 0) break;
    for (int i = 0; i < count; ++i) std::ignore = knownWithPid(events[i].data.fd);
  }
  std::vector<pid_t> untold;
  {
    const std::lock_guard lock(mutex_);
    untold = untold_;
  }
  for (const pid_t pid : untold) std::ignore = knownWithPid(pid);
}

bool RunningApplications::isToldOfEveryEnd() {
  const std::lock_guard lock(mutex_);
  return untold_.empty();
}

void RunningApplications::recordEvents(std::function<void()> waiting) {
  const std::lock_guard lock(mutex_);
  isRecording_ = waiting != nullptr;
  knowsWhatRan_ = false;
  recordingStartTicks_ = ticksSinceSystemStart();
  waiting_ = std::move(waiting);
  events_.clear();
}

void RunningApplications::findWhatRunsAlready() {
  {
    const std::lock_guard lock(mutex_);
    if (knowsWhatRan_) return;
  }
  std::ignore = all();
}

// A program that has run for long is news when it becomes an application, but
// not when it was one all the time.
bool RunningApplications::isNewsLocked(std::uint64_t startTicks) const {
  return knowsWhatRan_ || startTicks >= recordingStartTicks_;
}

std::vector<RunningApplications::Event> RunningApplications::takeEvents() {
  const std::lock_guard lock(mutex_);
  hasToldWaiting_ = false;
  return std::exchange(events_, {});
}

void RunningApplications::noteLocked(Event event) {
  if (isRecording_) events_.push_back(event);
}

void RunningApplications::tellWaiting() {
  std::function<void()> waiting;
  {
    const std::lock_guard lock(mutex_);
    if (events_.empty() || std::exchange(hasToldWaiting_, true)) return;
    waiting = waiting_;
  }
  if (waiting) waiting();
}

}  // namespace halvorn
