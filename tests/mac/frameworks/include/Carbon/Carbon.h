// What the macOS adapters use of Carbon: its events, and how Apple events are sent.
#pragma once

#include "ApplicationServices/ApplicationServices.h"

extern "C" {

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef unsigned long ItemCount;
struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
};
typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef next, EventRef event, void* context);
typedef EventHandlerProcPtr EventHandlerUPP;
enum { kEventClassApplication = 0x6170706C, kEventClassMenu = 0x6D656E75 };
enum { kEventAppLaunched = 5, kEventAppTerminated = 6, kEventAppFrontSwitched = 7 };
enum { kEventMenuBarShown = 2000, kEventMenuBarHidden = 2001 };
enum { eventNotHandledErr = -9874 };
EventTargetRef GetApplicationEventTarget(void);
EventTargetRef GetEventDispatcherTarget(void);
EventHandlerUPP NewEventHandlerUPP(EventHandlerProcPtr routine);
void DisposeEventHandlerUPP(EventHandlerUPP routine);
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount count,
                             const EventTypeSpec* types, void* context, EventHandlerRef* installed);
OSStatus RemoveEventHandler(EventHandlerRef handler);
OSType GetEventClass(EventRef event);
UInt32 GetEventKind(EventRef event);

typedef struct __TISInputSource* TISInputSourceRef;
typedef unsigned long UniCharCount;
typedef UInt16 UniChar;
struct UCKeyboardLayout;
enum { kUCKeyActionDisplay = 3 };
extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
TISInputSourceRef TISCopyCurrentKeyboardInputSource(void);
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef property);
UInt8 LMGetKbdType(void);
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, OptionBits options, UInt32* deadKeyState, UniCharCount capacity,
                        UniCharCount* length, UniChar* units);

typedef void* AEIdleUPP;
typedef void* AEFilterUPP;
OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode mode, AESendPriority priority,
             SInt32 timeoutTicks, AEIdleUPP idle, AEFilterUPP filter);

}  // extern "C"
