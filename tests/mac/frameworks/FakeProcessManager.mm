// Rules: the list is walked from kNoProcess and ends with procNotFound; 0/2 stands for this program (Process Manager
// Reference, "GetNextProcess", "Process Identification Constants"). A name is a length byte and as many bytes at most as
// a Str255 holds. A process that is gone is procNotFound everywhere.
#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>
#include <errno.h>
#import <objc/runtime.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

namespace {

using fakemac::Application;
using fakemac::state;

Application* running(const ProcessSerialNumber* number) {
  const bool isCurrent = number->highLongOfPSN == 0 && number->lowLongOfPSN == kCurrentProcess;
  for (Application& application : state().applications) {
    const bool isIt =
        isCurrent ? application.pid == 100
                  : application.number == fakemac::Number{number->highLongOfPSN, number->lowLongOfPSN};
    if (isIt && !application.hasEnded) return &application;
  }
  return nullptr;
}

void tell(ProcessSerialNumber* number, const fakemac::Number& found) {
  number->highLongOfPSN = found.high;
  number->lowLongOfPSN = found.low;
}

OSErr request(const ProcessSerialNumber* number, const char* what) {
  Application* const application = running(number);
  if (application == nullptr) return procNotFound;
  application->requests.emplace_back(what);
  if (std::strncmp(what, "front", 5) == 0 && state().front != application->number) {
    state().front = application->number;
    state().happened.push_back(7);
  }
  return noErr;
}

NSString* string(const std::string& bytes) { return [NSString stringWithUTF8String:bytes.c_str()]; }

}  // namespace

extern "C" {

OSErr GetNextProcess(ProcessSerialNumber* number) {
  bool isPassed = number->highLongOfPSN == 0 && number->lowLongOfPSN == kNoProcess;
  for (const Application& application : state().applications) {
    if (isPassed && !application.hasEnded) {
      tell(number, application.number);
      return noErr;
    }
    if (application.number == fakemac::Number{number->highLongOfPSN, number->lowLongOfPSN}) isPassed = true;
  }
  return procNotFound;
}

OSErr GetCurrentProcess(ProcessSerialNumber* number) {
  tell(number, state().applications.front().number);
  return noErr;
}

OSErr GetFrontProcess(ProcessSerialNumber* number) {
  if (!state().front) return procNotFound;
  tell(number, *state().front);
  return noErr;
}

OSErr SameProcess(const ProcessSerialNumber* a, const ProcessSerialNumber* b, Boolean* result) {
  const auto resolved = [](const ProcessSerialNumber* number) {
    const bool isCurrent = number->highLongOfPSN == 0 && number->lowLongOfPSN == kCurrentProcess;
    return isCurrent ? state().applications.front().number
                     : fakemac::Number{number->highLongOfPSN, number->lowLongOfPSN};
  };
  *result = resolved(a) == resolved(b);
  return noErr;
}

OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* number) {
  const Application* const application = fakemac::withPid(pid);
  if (application == nullptr) return procNotFound;
  tell(number, application->number);
  return noErr;
}

OSStatus GetProcessPID(const ProcessSerialNumber* number, pid_t* pid) {
  const Application* const application = running(number);
  if (application == nullptr) return procNotFound;
  *pid = application->pid;
  return noErr;
}

OSErr GetProcessInformation(const ProcessSerialNumber* number, ProcessInfoRec* information) {
  const Application* const application = running(number);
  if (application == nullptr) return procNotFound;
  if (information->processInfoLength != sizeof(ProcessInfoRec)) return -50;
  if (information->processName != nullptr) {
    const std::size_t length = application->name.size() < 255 ? application->name.size() : 255;
    information->processName[0] = static_cast<unsigned char>(length);
    std::memcpy(information->processName + 1, application->name.data(), length);
  }
  information->processSignature = application->signature;
  tell(&information->processNumber, application->number);
  tell(&information->processLauncher, application->launcher);
  return noErr;
}

CFDictionaryRef ProcessInformationCopyDictionary(const ProcessSerialNumber* number, UInt32 mask) {
  const Application* const application = running(number);
  if (application == nullptr || mask != kProcessDictionaryIncludeAllInformationMask) return nullptr;
  NSMutableDictionary* const dictionary = [[NSMutableDictionary alloc] init];
  for (const auto& [key, value] : application->information)
    [dictionary setObject:string(value) forKey:string(key)];
  return static_cast<CFDictionaryRef>(fakemac::given(dictionary));
}

OSStatus GetProcessBundleLocation(const ProcessSerialNumber* number, FSRef* location) {
  const Application* const application = running(number);
  if (application == nullptr || application->path.empty()) return procNotFound;
  fakemac::refer(location, application->path);
  return noErr;
}

OSStatus CopyProcessName(const ProcessSerialNumber* number, CFStringRef* name) {
  const Application* const application = running(number);
  if (application == nullptr || application->displayName.empty()) return procNotFound;
  *name = static_cast<CFStringRef>(fakemac::given([string(application->displayName) retain]));
  return noErr;
}

OSErr SetFrontProcess(const ProcessSerialNumber* number) { return request(number, "front"); }
OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* number, OptionBits options) {
  return request(number, (options & kSetFrontProcessFrontWindowOnly) != 0 ? "front window" : "front");
}
OSErr ShowHideProcess(const ProcessSerialNumber* number, Boolean visible) {
  return request(number, visible != 0 ? "show" : "hide");
}
Boolean IsProcessVisible(const ProcessSerialNumber* number) {
  const Application* const application = running(number);
  if (application == nullptr) return 0;
  const auto& requests = application->requests;
  const auto last = std::find_if(requests.rbegin(), requests.rend(),
                                 [](const std::string& each) { return each == "hide" || each == "show"; });
  return last == requests.rend() || *last == "show" ? 1 : 0;
}
OSErr WakeUpProcess(const ProcessSerialNumber* number) { return request(number, "wake"); }

// An id that nobody has is no error: the answer is empty (sysctl(3), KERN_PROC).
int sysctl(int* name, unsigned nameLength, void* old, std::size_t* oldLength, void*, std::size_t) {
  const bool isAsked =
      nameLength == 4 && name[0] == CTL_KERN && name[1] == KERN_PROC && name[2] == KERN_PROC_PID;
  if (!isAsked || *oldLength < sizeof(kinfo_proc)) {
    errno = isAsked ? ENOMEM : ENOENT;
    return -1;
  }
  const Application* const application = fakemac::withPid(name[3]);
  *oldLength = 0;
  if (application == nullptr) return 0;
  auto* const record = static_cast<kinfo_proc*>(old);
  std::memset(record, 0, sizeof(*record));
  record->kp_proc.p_starttime.tv_sec = static_cast<time_t>(application->startSeconds);
  record->kp_proc.p_starttime.tv_usec = static_cast<suseconds_t>(
      (application->startSeconds - static_cast<double>(record->kp_proc.p_starttime.tv_sec)) * 1e6);
  constexpr int kAddressesOf64Bits = 0x4;  // P_LP64: every program of today has it
  record->kp_proc.p_flag = kAddressesOf64Bits | (state().isDebugged ? P_TRACED : 0);
  *oldLength = sizeof(*record);
  return 0;
}

}  // extern "C"

// A running application: -terminate and -forceTerminate answer whether the request was sent (NSRunningApplication).
@interface KTFakeRunningApplication : NSRunningApplication {
  Application* application_;
}
- (id)initWithApplication:(Application*)application;
@end

static id applicationWithPid(id, SEL, pid_t pid) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no list"];
  Application* const application = fakemac::withPid(pid);
  if (application == nullptr) return nil;
  return [[[KTFakeRunningApplication alloc] initWithApplication:application] autorelease];
}

@implementation KTFakeRunningApplication
// The class is there on this system and knows nobody: its question is answered here instead.
+ (void)load {
  fakemac::answerInstead(object_getClass(objc_getClass("NSRunningApplication")),
                         @selector(runningApplicationWithProcessIdentifier:), (IMP)applicationWithPid,
                         "@@:i");
}
- (id)initWithApplication:(Application*)application {
  self = [super init];
  if (self != nil) application_ = application;
  ++state().liveRunningApplications;
  return self;
}
- (void)dealloc {
  --state().liveRunningApplications;
  [super dealloc];
}
- (BOOL)ask:(const char*)request endsIt:(BOOL)endsIt {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"%s", request];
  if (application_->hasEnded) return NO;
  application_->requests.emplace_back(request);
  if (endsIt) fakemac::end(*application_);
  return YES;
}
- (BOOL)terminate {
  return [self ask:"terminate" endsIt:application_->quitting == Application::Quitting::WhenAsked];
}
- (BOOL)forceTerminate {
  return [self ask:"forceTerminate" endsIt:YES];
}
- (BOOL)isTerminated {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"isTerminated"];
  return application_->hasEnded;
}
@end
