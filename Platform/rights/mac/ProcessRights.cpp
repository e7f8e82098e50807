#include "Platform/rights/posix/ProcessRights.h"

#include <mach-o/dyld.h>
#include <sys/param.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>

namespace halvorn::ProcessRights {

// That the real user is another one says nothing here: the system starts tools with administrator rights so.
bool comeFromTheFile() {
  char path[MAXPATHLEN] = {};
  std::uint32_t room = sizeof path;
  struct stat facts {};
  if (::_NSGetExecutablePath(path, &room) != 0 || ::stat(path, &facts) != 0) return true;
  return (facts.st_mode & (S_ISUID | S_ISGID)) != 0;
}

// There are no single rights to give up; what can be refused is that others look in.
bool keepThoseToFiles() {
  (void)::ptrace(PT_DENY_ATTACH, 0, nullptr, 0);
  return true;
}

void takeUsualShare() {
  ::setpriority(PRIO_PROCESS, 0, 0);
  ::setpriority(PRIO_DARWIN_PROCESS, 0, 0);
  (void)::setiopolicy_np(IOPOL_TYPE_DISK, IOPOL_SCOPE_PROCESS, IOPOL_DEFAULT);
}

// Nothing here ends a process together with its starter.
void outliveStarter() {}

}  // namespace halvorn::ProcessRights
