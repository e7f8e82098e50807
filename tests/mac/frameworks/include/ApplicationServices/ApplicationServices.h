// What the macOS adapters use of Application Services: the Process Manager and Accessibility.
#pragma once

#include <sys/types.h>

#include "CoreServices/CoreServices.h"

extern "C" {

typedef FSRef* FSRefPtr;

#pragma pack(push, 2)
struct ProcessInfoRec {
  UInt32 processInfoLength;
  StringPtr processName;
  ProcessSerialNumber processNumber;
  UInt32 processType;
  OSType processSignature;
  UInt32 processMode;
  Ptr processLocation;
  UInt32 processSize;
  UInt32 processFreeMem;
  ProcessSerialNumber processLauncher;
  UInt32 processLaunchDate;
  UInt32 processActiveTime;
  FSRefPtr processAppRef;
};
#pragma pack(pop)

enum { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };
enum { kProcessDictionaryIncludeAllInformationMask = 0xFFFFFFFF };
enum { kSetFrontProcessFrontWindowOnly = 1 << 0 };
enum { procNotFound = -600 };

OSErr GetNextProcess(ProcessSerialNumber* number);
OSErr GetCurrentProcess(ProcessSerialNumber* number);
OSErr GetFrontProcess(ProcessSerialNumber* number);
OSErr SameProcess(const ProcessSerialNumber* a, const ProcessSerialNumber* b, Boolean* result);
OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* number);
OSStatus GetProcessPID(const ProcessSerialNumber* number, pid_t* pid);
OSErr GetProcessInformation(const ProcessSerialNumber* number, ProcessInfoRec* information);
CFDictionaryRef ProcessInformationCopyDictionary(const ProcessSerialNumber* number, UInt32 mask);
OSStatus GetProcessBundleLocation(const ProcessSerialNumber* number, FSRef* location);
OSStatus CopyProcessName(const ProcessSerialNumber* number, CFStringRef* name);
OSErr SetFrontProcess(const ProcessSerialNumber* number);
OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* number, OptionBits options);
OSErr ShowHideProcess(const ProcessSerialNumber* number, Boolean visible);
Boolean IsProcessVisible(const ProcessSerialNumber* number);
OSErr WakeUpProcess(const ProcessSerialNumber* number);

typedef SInt32 AXError;
enum { kAXErrorSuccess = 0 };
typedef const struct __AXUIElement* AXUIElementRef;
typedef struct __AXObserver* AXObserverRef;
typedef void (*AXObserverCallback)(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                   void* context);
AXUIElementRef AXUIElementCreateApplication(pid_t pid);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
AXError AXObserverCreate(pid_t pid, AXObserverCallback callback, AXObserverRef* observer);
AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void* context);
AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef element,
                                     CFStringRef notification);
CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer);

}  // extern "C"
