#include "KTStuff/KTClasses/KTProcessClass.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "Core/Notifications.h"
#include "Platform/processes/ApplicationEvents.h"

namespace halvorn {

KTProcessClass::KTProcessClass(const KTProcessServices& services)
    : services_(services), self_(std::make_shared<KTProcessClass*>(this)) {}

KTProcessClass::~KTProcessClass() = default;

void KTProcessClass::installNotifications() {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isHandlerInstalled_, true)) return;
  }
  services_.events.installHandler([self = std::weak_ptr<KTProcessClass*>(self_)](int kind) {
    if (const auto alive = self.lock()) ApplicationStartEndHandler(kind, **alive);
  });
}

void ApplicationStartEndHandler(int kind, KTProcessClass& processes) {
  const char* change = "";
  if (kind == kFrontApplicationSwitchedEvent) {
    change = "front";
  } else if (kind == kApplicationTerminatedEvent) {
    processes.applicationEnded();
    change = "ended";
  } else if (kind == kApplicationLaunchedEvent) {
    processes.applicationStarted();
    change = "started";
  }
  // Not owned: the class object outlives every notification about it.
  const std::shared_ptr<const void> object(std::shared_ptr<void>(), &processes);
  processes.services().notifications.enqueueWhenIdle(
      Notification{KTProcessChangeNotification, object, {{"change", Text(change)}}});
}

KTProcessPointer KTProcessClass::processWithSerialNumber(ProcessSerialNumber serialNumber) {
  if (auto cached = cachedProcessWithSerialNumber(serialNumber)) return cached;
  KTProcessPointer made = KTProcess::create(*this, serialNumber);
  const std::lock_guard lock(mutex_);
  // Another thread may have been faster.
  if (const auto place = findLocked(serialNumber)) return moveToFrontLocked(*place);
  insertAtFrontLocked(made);
  return made;
}

KTProcessPointer KTProcessClass::processWithPID(std::int32_t pid) {
  const auto serialNumber = services_.source.processForPID(pid);
  return serialNumber ? processWithSerialNumber(*serialNumber) : nullptr;
}

KTProcessPointer KTProcessClass::frontProcess() {
  const auto serialNumber = services_.source.frontProcess();
  return serialNumber ? processWithSerialNumber(*serialNumber) : nullptr;
}

KTProcessPointer KTProcessClass::currentProcess() {
  installNotifications();
  {
    const std::lock_guard lock(mutex_);
    if (currentProcess_) return currentProcess_;
  }
  const auto serialNumber = services_.source.currentProcess();
  if (!serialNumber) return nullptr;
  const KTProcessPointer current = processWithSerialNumber(*serialNumber);
  const std::lock_guard lock(mutex_);
  if (!currentProcess_) currentProcess_ = current;
  return currentProcess_;
}

std::vector<KTProcessPointer> KTProcessClass::allProcesses() {
  installNotifications();
  std::vector<KTProcessPointer> result;
  for (const ProcessSerialNumber serialNumber : services_.source.runningProcesses()) {
    result.push_back(processWithSerialNumber(serialNumber));
  }
  return result;
}

KTProcessPointer KTProcessClass::processWithSignature(FourCharCode signature) {
  installNotifications();
  for (const ProcessSerialNumber serialNumber : services_.source.runningProcesses()) {
    const auto information = services_.source.information(serialNumber);
    if (information && information->signature == signature) return processWithSerialNumber(serialNumber);
  }
  return nullptr;
}

KTProcessPointer KTProcessClass::processWithIdentifier(const Text& identifier) {
  for (const KTProcessPointer& process : allProcesses()) {
    if (process->identifier() == identifier) return process;
  }
  return nullptr;
}

KTProcessPointer KTProcessClass::cachedProcessWithSerialNumber(ProcessSerialNumber serialNumber) {
  const std::lock_guard lock(mutex_);
  const auto place = findLocked(serialNumber);
  return place ? moveToFrontLocked(*place) : nullptr;
}

std::int64_t KTProcessClass::indexOfCachedProcessWithSerialNumber(ProcessSerialNumber serialNumber) const {
  const std::lock_guard lock(mutex_);
  const auto place = findLocked(serialNumber);
  return place ? std::distance(cache_->begin(), *place) : kNotFound;
}

// The first one in the order of the cache, as the platform compares.
std::optional<KTProcessClass::Cache::iterator> KTProcessClass::findLocked(
    ProcessSerialNumber serialNumber) const {
  if (!cache_) return std::nullopt;
  if (!mayHoldEquals_) {
    if (const auto place = findByHashLocked(serialNumber)) return place;
  }
  // A process may have several numbers, and these several hashes.
  const auto place = std::find_if(cache_->begin(), cache_->end(), [&](const KTProcessPointer& process) {
    return process->isSameProcess(serialNumber);
  });
  return place != cache_->end() ? std::optional(place) : std::nullopt;
}

std::optional<KTProcessClass::Cache::iterator> KTProcessClass::findByHashLocked(
    ProcessSerialNumber serialNumber) const {
  const auto [first, last] = placesByHash_.equal_range(KTProcess::hash(serialNumber));
  for (auto entry = first; entry != last; ++entry) {
    if ((*entry->second)->isSameProcess(serialNumber)) return entry->second;
  }
  return std::nullopt;
}

KTProcessPointer KTProcessClass::moveToFrontLocked(Cache::iterator place) {
  cache_->splice(cache_->begin(), *cache_, place);
  return cache_->front();
}

void KTProcessClass::insertAtFront(const KTProcessPointer& process) {
  const std::lock_guard lock(mutex_);
  mayHoldEquals_ = mayHoldEquals_ || findLocked(process->serialNumber());
  insertAtFrontLocked(process);
}

void KTProcessClass::insertAtFrontLocked(const KTProcessPointer& process) {
  if (!cache_) cache_.emplace();
  ++insertions_;
  cache_->push_front(process);
  placesByHash_.emplace(process->hash(), cache_->begin());
}

void KTProcessClass::cleanupCache() {
  const auto cached = cachedProcessesEnumerator();
  if (!cached) return;
  // The system is asked without the lock; what ended in between is found by the next cleanup.
  std::vector<ProcessSerialNumber> numbers;
  numbers.reserve(cached->size());
  for (const KTProcessPointer& process : *cached) numbers.push_back(process->serialNumber());
  const std::vector<bool> areRunning = services_.source.areRunning(numbers);
  std::unordered_set<KTProcessPointer> ended;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!areRunning[i]) ended.insert((*cached)[i]);
  }
  if (ended.empty()) return;
  const std::lock_guard lock(mutex_);
  std::erase_if(placesByHash_, [&](const auto& entry) { return ended.contains(*entry.second); });
  std::erase_if(*cache_, [&](const KTProcessPointer& process) { return ended.contains(process); });
}

std::optional<std::vector<KTProcessPointer>> KTProcessClass::cachedProcessesEnumerator() const {
  const std::lock_guard lock(mutex_);
  if (!cache_) return std::nullopt;
  return std::vector<KTProcessPointer>(cache_->begin(), cache_->end());
}

void KTProcessClass::applicationStarted() {
  const std::lock_guard lock(mutex_);
  ++launchEndCount_;
}

void KTProcessClass::applicationEnded() {
  // Many applications may have ended before the first event about it came; one walk finds them all.
  std::optional<CacheState> state;
  bool isClean = false;
  if (const auto endsSeen = services_.source.endsSeen()) {
    const std::lock_guard lock(mutex_);
    state = CacheState{*endsSeen, insertions_};
    isClean = state == cleanAt_;
  }
  if (!isClean) cleanupCache();
  const std::lock_guard lock(mutex_);
  cleanAt_ = state;
  ++launchEndCount_;
}

std::uint32_t KTProcessClass::applicationLaunchEndCount() const {
  const std::lock_guard lock(mutex_);
  return launchEndCount_;
}

}  // namespace halvorn
