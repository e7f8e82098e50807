// One running application, named by its process serial number.
//
// Made by KTProcessClass, which hands out one object per process. What it answers is asked of the system at
// the first call and then kept; a failure is not kept but asked again. Everything degrades to an empty answer
// once the process has ended: nullopt, "", 0, 0.0, and "1.0" for the version.
//
// The methods of the class itself, as against those of one process, are in
// KTProcessClass.h, which comes with this file.
//
// Thread: any, except for the Accessibility methods (main). The KTProcessClass must outlive it.
#pragma once

#include <any>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "Core/Cancellation.h"
#include "Core/Date.h"
#include "Core/FourCharCode.h"
#include "Core/Ordering.h"
#include "Core/PropertyValue.h"
#include "Core/Text.h"
#include "Platform/processes/Accessibility.h"
#include "Platform/processes/ApplicationControl.h"
#include "Platform/processes/ProcessSource.h"
#include "Platform/window/Images.h"

namespace halvorn {

class KTProcessClass;
class Notifications;
struct KTProcessServices;

inline constexpr char KTPlatformCocoa[] = "Cocoa";    // a bundle that names its principal class
inline constexpr char KTPlatformCarbon[] = "Carbon";  // neither of the two
inline constexpr char KTPlatformJava[] = "Java";      // its identifier says so

class KTProcess : public std::enable_shared_from_this<KTProcess> {
 public:
  // A new object that is not in the cache. Most callers want KTProcessClass::processWithSerialNumber.
  [[nodiscard]] static std::shared_ptr<KTProcess> create(KTProcessClass& processes,
                                                         ProcessSerialNumber serialNumber);
  ~KTProcess();  // nothing is watched any more
  KTProcess(const KTProcess&) = delete;
  KTProcess& operator=(const KTProcess&) = delete;

  // Puts this object at the front of the cache.
  void addToCache();

  // --- identity (KTProcess.cpp)

  [[nodiscard]] ProcessSerialNumber serialNumber() const { return psn_; }    // stays when it ends
  [[nodiscard]] bool isSameProcess(ProcessSerialNumber serialNumber) const;  // by the number
  // Means the same process, not the same object.
  [[nodiscard]] bool isEqual(const KTProcess& other) const;
  [[nodiscard]] bool isEqual(const std::shared_ptr<KTProcess>& other) const;  // false for null
  [[nodiscard]] bool isEqual(const std::any& object) const;  // false unless it holds a shared_ptr<KTProcess>
  // Equal for equal processes.
  [[nodiscard]] std::uint32_t hash() const { return hash(psn_); }
  [[nodiscard]] static std::uint32_t hash(ProcessSerialNumber serialNumber) {
    return serialNumber.high + serialNumber.low;
  }
  // By name, without regard to case.
  [[nodiscard]] Ordering compare(const KTProcess& other) const;
  // Process "Editor" (EDIT) 2.1
  [[nodiscard]] Text description() const;

  // --- attributes (KTProcessAttributes.cpp)

  // Reads name and signature unless they are known. False when the process has ended before that.
  bool getProcessInfo() const;
  [[nodiscard]] OptionalText name() const;  // nullopt when it has ended
  // As people see it.
  [[nodiscard]] OptionalText displayName() const;
  [[nodiscard]] FourCharCode signature() const;                            // 0 without one
  [[nodiscard]] Text signatureString() const;                              // four characters, or ""
  [[nodiscard]] Text signatureHexString() const;                           // "45444954"
  [[nodiscard]] std::int32_t unixPID() const;                              // 0 once it has ended
  [[nodiscard]] std::optional<PropertyDictionary> infoDictionary() const;  // of its bundle
  [[nodiscard]] Text identifier() const;  // "com.example.editor"; "" without one
  // Of the bundle, or of the program when there is none.
  [[nodiscard]] OptionalText path() const;
  // The bundle at path(), by its path; nullopt when no folder is there.
  [[nodiscard]] OptionalText bundle() const;
  [[nodiscard]] ImagePointer icon() const;      // Thread: main
  [[nodiscard]] bool isStillRunning() const;    // asked anew each time
  [[nodiscard]] bool isFrontProcess() const;    // false where the desktop does not tell
  [[nodiscard]] bool isBackgroundOnly() const;  // as its bundle declares
  [[nodiscard]] bool isCocoa() const;           // KTPlatformCocoa
  // One of the KTPlatform texts.
  [[nodiscard]] Text platform() const;

  // "1.0" when nothing better is known, and that is final.
  [[nodiscard]] Text version() const;
  // From the classic version resource, for applications that carry one.
  [[nodiscard]] OptionalText carbonVersion() const;
  [[nodiscard]] int majorVersionNumber() const;  // 2 of "2.1b3"
  // Compares number by number: 2.0 is at least 2, 2.1 is at least 2.0.5.
  [[nodiscard]] bool isAtLeastVersion(const Text& version) const;

  // Logs: "*** Cannot get launch date for %@" when the process has ended; the date is then that of the call.
  [[nodiscard]] Date launchDate() const;
  [[nodiscard]] float secondsRunning() const;  // since its launch
  // Seconds of processor time used so far. Starts a shell that writes a file in /tmp: two callers at once
  // spoil each other's answer.
  [[nodiscard]] double cpuTime() const;

  // "id:" and the identifier; without one "sig:" and the signature; without one "name:" and the name.
  [[nodiscard]] Text hashStringSource() const;
  [[nodiscard]] Text hashString() const;  // its MD5 digest, 32 digits

  // What callers attach to the object.
  [[nodiscard]] std::any infoForKey(const Text& key) const;  // empty when absent
  void setInfo(std::any object, const Text& forKey);         // an empty one removes the key
  [[nodiscard]] std::any info() const { return infoForKey(Text()); }
  void setInfo(std::any object) { setInfo(std::move(object), Text()); }

  // --- acting on the process (KTProcessQuitting.cpp, KTProcessEvents.cpp)

  // Asks the process to end for up to `timeout` seconds, then ends it by force for up to as long
  // again. Blocks the caller meanwhile. False when it still runs, or cannot be found. Once
  // `cancellation` is requested nothing more is asked or forced, and what still runs then counts as
  // such. Logs: one line, whatever the outcome.
  bool quitRunningApplicationWithTimeout(float timeout, const Cancellation& cancellation = kNeverCanceled);
  // Quits with four seconds each, and where that fails sends the classic quit event without waiting, unless
  // canceled. Logs: also the event's failures.
  void quit(const Cancellation& cancellation = kNeverCanceled);
  // Sends an event without parameters and waits up to `timeout` seconds for the
  // reply, which is thrown away. Logs:
  // "*** event error: %d".
  void sendAppleEvent(FourCharCode eventClass, FourCharCode eventID, float timeout);

  void wakeUp();  // lets one that sleeps look for events
  // Whether none of its windows is shown; nullopt when it has none, or the desktop does not tell.
  [[nodiscard]] std::optional<bool> isHidden() const;
  void setHidden(bool hidden);            // all its windows, as far as the desktop lets it
  void setFrontProcess();                 // with all its windows
  void setFrontProcessFrontWindowOnly();  // the others stay where they are
  // Brings this program in front, then the receiver's front window, and wakes the receiver.
  void temporarilySwitchOut();

  // --- Accessibility (KTProcessAccessibility.cpp). Thread: main.

  // Does nothing when done before. Logs: "AX Notifications: Could not create ..." when
  // the application does not take part.
  void installAXObserver();
  // Has KTProcessUINotification posted for each notification of that name ("AXFocusedWindowChanged"). Logs:
  // "AX Notifications: Could not add notification %@ for %@".
  void addAXNotification(const Text& notification);
  void removeAXNotification(const Text& notification);  // the rest goes on
  void unregisterAXNotifications();                     // all of them

 private:
  struct Key {};  // lets create() alone construct

 public:
  // For create() alone.
  KTProcess(Key, KTProcessClass& processes, ProcessSerialNumber serialNumber);

 private:
  enum class CocoaStatus : std::int32_t { Unknown = 0, Cocoa = 1, Other = 2 };

  [[nodiscard]] const KTProcessServices& services() const;
  [[nodiscard]] CocoaStatus readCocoaStatus() const;
  [[nodiscard]] Text readVersion() const;
  void sendQuitEvent();

  KTProcessClass& processes_;
  const ProcessSerialNumber psn_;

  // Guards what follows. Nothing is asked of the system while it is held.
  mutable std::mutex mutex_;
  mutable std::optional<PropertyDictionary> infoDictionary_;
  mutable FourCharCode signature_ = 0;
  mutable OptionalText name_;  // set: the process information was read
  mutable OptionalText displayName_;
  mutable OptionalText path_;
  mutable OptionalText version_;
  mutable std::optional<Date> launchDate_;
  mutable ImagePointer icon_;
  mutable CocoaStatus cocoaStatus_ = CocoaStatus::Unknown;
  std::optional<std::map<Text, std::any>> customInfo_;

  AccessibilityElementPointer axAppElem_;
  std::unique_ptr<AccessibilityObserver> axObserver_;
};

using KTProcessPointer = std::shared_ptr<KTProcess>;  // null for none

// What happens in the interface of a watched process arrives here and is posted as KTProcessUINotification.
// The element may be null.
void notificationHandler(const AccessibilityElementPointer& element, const Text& notification,
                         const KTProcessPointer& process, Notifications& notifications);

}  // namespace halvorn

#include "KTStuff/KTClasses/KTProcessClass.h"
