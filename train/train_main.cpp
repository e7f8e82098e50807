// train SOURCE DESTINATION [WRAPPER]: installs with the rights it was started with, usually the
// administrator's. Exits with the install function's result, or with 64 when it was not told what to do.
// Never with 126 or 127, which are what a failed start of the tool looks like.
#include <cstdio>
#include <optional>

#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/SilentFileChangeNotices.h"
#include "Platform/rights/posix/CopiedLine.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/StandardErrorLog.h"
#include "train/InstallConfinement.h"
#include "train/InstallFunction.h"
#include "train/InstallRights.h"
#include "train/PrivilegedProcess.h"
#include KT_TOOL_TRASH  // of this system

int main(int argumentCount, char** arguments) {
  using namespace halvorn;
  constexpr int usageStatus = 64;
  const ProcessStart start = secureProcess();
  if (start == ProcessStart::Unsafe) {
    std::fputs("train: not started in a safe way\n", stderr);
    return usageStatus;
  }
  if (argumentCount < 3 || argumentCount > 4) {
    std::fputs("usage: train source destination [wrapper]\n", stderr);
    return usageStatus;
  }
  if (start == ProcessStart::Privileged && !arePlainPaths(arguments + 1)) {
    std::fputs("train: with administrator rights, paths are absolute and without \"..\"\n", stderr);
    return usageStatus;
  }
  const auto rights = installRights();
  if (!rights) {
    std::fputs("train: the person who asked has no account\n", stderr);
    return usageStatus;
  }
  PosixClock clock;
  const StandardErrorLog log(clock, "train");
  ByteCounter copied(kToldEachBytes, tellCopied);
  FileRules rules = rights->files;
  if (start == ProcessStart::Privileged) rules.copied = &copied;
  PosixFileManager files(rules);
  ToolTrash trash(clock, rights->trashOwner, rights->files.links, rights->files.pins);
  SilentFileChangeNotices notices;
  const auto wrapper = argumentCount == 4 ? OptionalText(arguments[3]) : std::nullopt;
  const InstallPaths paths{.source = arguments[1], .destination = arguments[2], .wrapper = wrapper};
  if (start == ProcessStart::Privileged) {
    const auto failure = confineTo(paths, *rights, [&](int folder) { return trash.reach(folder); });
    if (failure) return static_cast<int>(refuseToInstall(log, *failure, paths.destination));
  }
  const InstallServices services{.files = files, .trash = trash, .notices = notices, .log = log};
  return static_cast<int>(InstallApplication(services, paths.source, paths.destination, paths.wrapper));
}
