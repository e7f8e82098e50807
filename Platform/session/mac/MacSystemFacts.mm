#include "Platform/session/mac/MacSystemFacts.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#include <sys/mount.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include <cstring>

namespace halvorn {
namespace {

std::optional<int> gestalt(OSType selector) {
  SInt32 answer = 0;
  const OSErr status = Gestalt(selector, &answer);
  return status == noErr ? std::optional<int>(answer) : std::nullopt;
}

}  // namespace

std::optional<int> MacSystemFacts::majorVersion() const { return gestalt(gestaltSystemVersionMajor); }
std::optional<int> MacSystemFacts::minorVersion() const { return gestalt(gestaltSystemVersionMinor); }
std::optional<int> MacSystemFacts::bugfixVersion() const { return gestalt(gestaltSystemVersionBugFix); }
std::optional<int> MacSystemFacts::packedVersion() const { return gestalt(gestaltSystemVersion); }

double MacSystemFacts::frameworkVersion() const { return NSAppKitVersionNumber; }

bool MacSystemFacts::isDebuggerAttached() const {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, ::getpid()};
  struct kinfo_proc record;
  std::memset(&record, 0, sizeof(record));
  std::size_t size = sizeof(record);
  if (sysctl(name, 4, &record, &size, nullptr, 0) != 0 || size == 0) return false;
  return (record.kp_proc.p_flag & P_TRACED) != 0;
}

FileSystemAnswer MacSystemFacts::fileSystemOf(const Text& path) const {
  struct statfs record;
  std::memset(&record, 0, sizeof(record));
  const int status = statfs(path.bytes().c_str(), &record);
  return {status, status == 0 ? Text(record.f_fstypename) : Text()};
}

}  // namespace halvorn
