// The process model: finds running applications, hands out one KTProcess for each,
// and tells when they come and go.
//
//   KTProcessClass processes{services};
//   for (const auto& process : processes.allProcesses()) ...
//   const auto observation = notifications.addObserver(KTProcessChangeNotification, nullptr, handler);
//
// Thread: any. System events arrive on the main thread and change the cache there while another thread may
// walk a list it got: lists are snapshots, and the objects in them stay valid as long as somebody holds them.
// The services must outlive this object, and this object every KTProcess.
#pragma once

#include <cstdint>
#include <limits>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "KTStuff/KTClasses/KTProcess.h"

namespace halvorn {

class Accessibility;
class AppleEvents;
class ApplicationControl;
class ApplicationEvents;
class ItemFacts;
class Bundles;
class Clock;
class Digests;
class FileManager;
class FourCharCodes;
class Images;
class Log;
class Notifications;
class ProcessSource;
class Tasks;
class Unicode;

// Posted when idle, for any object: an application was launched or has ended, or another one came to the
// front. The object is the KTProcessClass; under "change" stands "started", "ended" or "front".
inline constexpr char KTProcessChangeNotification[] = "KTProcessChangeNotification";
// Posted when idle: something that was asked for with addAXNotification happened. The
// object is the KTProcess; under "element" stands the Accessibility element, or "", under
// "event" the name of what happened.
inline constexpr char KTProcessUINotification[] = "KTProcessUINotification";

struct KTProcessServices {  // what the system is asked through
  ProcessSource& source;
  ApplicationEvents& events;
  ApplicationControl& control;
  AppleEvents& appleEvents;
  Accessibility& accessibility;
  Notifications& notifications;
  const Bundles& bundles;
  const ItemFacts& items;
  const FileManager& files;
  Images& images;
  Tasks& tasks;
  const Unicode& unicode;
  const Digests& digests;
  const FourCharCodes& codes;
  Clock& clock;
  const Log& log;
};

class KTProcessClass {
 public:
  static constexpr std::int64_t kNotFound = std::numeric_limits<std::int64_t>::max();  // no position

  explicit KTProcessClass(const KTProcessServices& services);  // connects nothing yet
  ~KTProcessClass();                                           // events that come later find nobody
  KTProcessClass(const KTProcessClass&) = delete;
  KTProcessClass& operator=(const KTProcessClass&) = delete;

  // Has the system's events turned into notifications from now on; once, and every
  // way of getting a process does it.
  void installNotifications();

  // Never null: also for a process that has ended.
  [[nodiscard]] KTProcessPointer processWithSerialNumber(ProcessSerialNumber serialNumber);
  // Null when there is no such application, as all of the following.
  [[nodiscard]] KTProcessPointer processWithPID(std::int32_t pid);
  [[nodiscard]] KTProcessPointer frontProcess();
  // The first of them that declares the code, or has the identifier of its bundle.
  [[nodiscard]] KTProcessPointer processWithSignature(FourCharCode signature);
  [[nodiscard]] KTProcessPointer processWithIdentifier(const Text& identifier);
  // This program's own; remembered once found.
  [[nodiscard]] KTProcessPointer currentProcess();
  // In the system's order; never holds a null.
  [[nodiscard]] std::vector<KTProcessPointer> allProcesses();

  // The cache, most recently asked for first. A match moves to the front.
  [[nodiscard]] KTProcessPointer cachedProcessWithSerialNumber(ProcessSerialNumber serialNumber);
  // Its position, or kNotFound. Moves nothing.
  [[nodiscard]] std::int64_t indexOfCachedProcessWithSerialNumber(ProcessSerialNumber serialNumber) const;
  // Drops the objects of processes that have ended.
  void cleanupCache();
  // What is in the cache now, in its order; nullopt before the first object was made.
  [[nodiscard]] std::optional<std::vector<KTProcessPointer>> cachedProcessesEnumerator() const;

  void applicationStarted();  // told by the system's events
  void applicationEnded();    // likewise
  // Two readings that differ tell that applications came or went in between.
  [[nodiscard]] std::uint32_t applicationLaunchEndCount() const;

  [[nodiscard]] const KTProcessServices& services() const { return services_; }  // as they were given

 private:
  friend class KTProcess;
  using Cache = std::list<KTProcessPointer>;
  // No process of the cache can have ended between two equal ones.
  struct CacheState {
    std::uint64_t endsSeen;
    std::uint64_t insertions;
    friend bool operator==(const CacheState&, const CacheState&) = default;
  };

  void insertAtFront(const KTProcessPointer& process);
  void insertAtFrontLocked(const KTProcessPointer& process);
  [[nodiscard]] std::optional<Cache::iterator> findLocked(ProcessSerialNumber serialNumber) const;
  [[nodiscard]] std::optional<Cache::iterator> findByHashLocked(ProcessSerialNumber serialNumber) const;
  [[nodiscard]] KTProcessPointer moveToFrontLocked(Cache::iterator place);

  const KTProcessServices services_;
  // What events and notifications hold instead of this object, so that one that comes late finds nobody.
  std::shared_ptr<KTProcessClass*> self_;

  // Guards what follows.
  mutable std::mutex mutex_;
  mutable std::optional<Cache> cache_;
  // Most processes are asked for by the number they were first asked for, so that only few of the cache are
  // compared, however long it is.
  std::unordered_multimap<std::uint32_t, Cache::iterator> placesByHash_;
  // Whether equal objects may stand in the cache: what the hash leads to need not be the first of them then.
  bool mayHoldEquals_ = false;
  std::uint64_t insertions_ = 0;
  // When the cache was last known to hold no ended process; nullopt where the system does not count ends.
  std::optional<CacheState> cleanAt_;
  std::uint32_t launchEndCount_ = 0;
  KTProcessPointer currentProcess_;
  bool isHandlerInstalled_ = false;
};

// The system's events about applications arrive here. Any other kind than the three known
// ones is posted with the change "".
void ApplicationStartEndHandler(int kind, KTProcessClass& processes);

}  // namespace halvorn
