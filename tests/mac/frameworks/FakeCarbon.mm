// Rules: a handler gets the kinds it was installed for, until it is removed; its answer is the event's (Carbon Event
// Manager Reference, "InstallEventHandler"). Descriptors are disposed of by whoever made them, null ones may be as well
// (Apple Event Manager Reference, "AEDisposeDesc"). A reply exists when it was waited for.
#include <Carbon/Carbon.h>

#include <cstring>
#include <list>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

struct OpaqueEventRef {
  OSType eventClass;
  UInt32 kind;
};
struct OpaqueEventHandlerRef {
  EventHandlerUPP routine;
  std::vector<EventTypeSpec> types;
  void* context;
};
struct OpaqueAEDataStorageType {
  fakemac::SentEvent event;
};

namespace {

using fakemac::state;

std::list<OpaqueEventHandlerRef>& handlers() {
  static std::list<OpaqueEventHandlerRef> all;
  return all;
}

void fill(AEDesc* result, DescType type, const fakemac::SentEvent& event) {
  result->descriptorType = type;
  result->dataHandle = new OpaqueAEDataStorageType*(new OpaqueAEDataStorageType{event});
  fakemac::countGiven();
}

}  // namespace

namespace fakemac {

std::int32_t deliver(std::uint32_t eventClass, std::uint32_t kind) {
  OpaqueEventRef event{eventClass, kind};
  OSStatus status = eventNotHandledErr;
  const std::list<OpaqueEventHandlerRef> installed = handlers();
  for (const OpaqueEventHandlerRef& handler : installed) {
    for (const EventTypeSpec& type : handler.types) {
      if (type.eventClass == eventClass && type.eventKind == kind)
        status = handler.routine(nullptr, &event, handler.context);
    }
  }
  return status;
}

std::size_t installedHandlers() { return handlers().size(); }

}  // namespace fakemac

extern "C" {

EventTargetRef GetApplicationEventTarget(void) {
  static int target;
  return reinterpret_cast<EventTargetRef>(&target);
}
EventTargetRef GetEventDispatcherTarget(void) {
  static int target;
  return reinterpret_cast<EventTargetRef>(&target);
}
EventHandlerUPP NewEventHandlerUPP(EventHandlerProcPtr routine) {
  fakemac::countGiven();
  return routine;
}
void DisposeEventHandlerUPP(EventHandlerUPP) { fakemac::countTaken(); }

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount count,
                             const EventTypeSpec* types, void* context, EventHandlerRef* installed) {
  if (state().refusesHandlers) return -9860;  // eventAlreadyPostedErr, or whatever the reason is
  const bool isMenu = types[0].eventClass == kEventClassMenu;
  if (handler == nullptr || target != (isMenu ? GetEventDispatcherTarget() : GetApplicationEventTarget()))
    return -50;
  handlers().push_back({handler, {types, types + count}, context});
  if (installed != nullptr) *installed = &handlers().back();
  return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
  for (auto each = handlers().begin(); each != handlers().end(); ++each) {
    if (&*each != handler) continue;
    handlers().erase(each);
    return noErr;
  }
  return -9878;  // eventInternalErr
}

OSType GetEventClass(EventRef event) { return event->eventClass; }
UInt32 GetEventKind(EventRef event) { return event->kind; }

OSErr AECreateDesc(DescType type, const void* data, long size, AEDesc* result) {
  if (state().descriptorStatus != 0) return static_cast<OSErr>(state().descriptorStatus);
  if (type != typeProcessSerialNumber || size != sizeof(ProcessSerialNumber)) return -50;
  ProcessSerialNumber number;
  std::memcpy(&number, data, sizeof(number));
  fill(result, type, {.target = {number.highLongOfPSN, number.lowLongOfPSN}});
  return noErr;
}

OSErr AEDisposeDesc(AEDesc* descriptor) {
  if (descriptor->dataHandle != nullptr) {
    delete *descriptor->dataHandle;
    delete descriptor->dataHandle;
    fakemac::countTaken();
  }
  *descriptor = {typeNull, nullptr};
  return noErr;
}

OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                         AEReturnID returnID, AETransactionID transaction, AppleEvent* result) {
  if (state().creationStatus != 0) return static_cast<OSErr>(state().creationStatus);
  if (returnID != kAutoGenerateReturnID || transaction != kAnyTransactionID) return -50;
  fill(result, 0x61657674,
       {.eventClass = eventClass, .eventID = eventID, .target = (*target->dataHandle)->event.target});
  return noErr;
}

OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode mode, AESendPriority priority,
             SInt32 timeoutTicks, AEIdleUPP, AEFilterUPP) {
  constexpr AESendMode waitsForReply = 0x3;
  fakemac::SentEvent sent = (*event->dataHandle)->event;
  sent.mode = mode;
  sent.priority = priority;
  sent.timeoutTicks = timeoutTicks;
  state().sentEvents.push_back(sent);
  if (state().eventStatus == 0 && (mode & waitsForReply) == waitsForReply) fill(reply, 0x61657674, sent);
  return static_cast<OSErr>(state().eventStatus);
}

}  // extern "C"
