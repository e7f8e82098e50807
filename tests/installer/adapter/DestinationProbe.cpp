// Chooses a destination with everything real, and prints it: destination_probe NAME [CODE ...]
//
// As a program of its own it can lie in a bundle, be another user's, and have a
// home folder of the test's making.
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/PreferredLanguages.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/processes/linux/proc/LinuxProcessSource.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/WindowSystem.h"
#include "Platform/running/linux/ThisProgram.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "Sources/DestinationChoice.h"
#include "tests/fakes/FakeProcesses.h"

namespace halvorn {
namespace {

void print(const char* name, const OptionalText& value) {
  std::printf("%s %s\n", name, value ? Log::escapedForLog(*value).bytes().c_str() : "(none)");
}

void choose(const Text& product, const std::vector<Text>& codes) {
  const Environment environment = Environment::ofThisProcess();
  const XdgFolders folders(environment);
  const std::vector<Text> languages = preferredLanguages({}, environment);
  const LinuxBundles bundles(pathOfThisProgram(), languages);
  const Launcher launcher(environment, folders);
  const LinuxWorkspace workspace(bundles, folders, environment, launcher, languages);
  const XdgSearchPaths searchPaths(folders);
  const ProcFiles procFiles;
  NoWindows windows;
  RunningApplications running(procFiles, bundles, windows, DesktopSession::ofThisProgram());
  LinuxProcessSource source(running, procFiles, windows, workspace);
  FakeProcesses rest;  // what no choice asks for
  PosixFileManager files;
  const KTProcessServices& services = rest.processes.services();
  KTProcessClass processes({.source = source,
                            .events = services.events,
                            .control = services.control,
                            .appleEvents = services.appleEvents,
                            .accessibility = services.accessibility,
                            .notifications = services.notifications,
                            .bundles = bundles,
                            .items = services.items,
                            .files = files,
                            .images = services.images,
                            .tasks = services.tasks,
                            .unicode = services.unicode,
                            .digests = services.digests,
                            .codes = services.codes,
                            .clock = services.clock,
                            .log = services.log});
  std::random_device random;
  DestinationChoice choice({.processes = processes,
                            .files = files,
                            .searchPaths = searchPaths,
                            .workspace = workspace,
                            .log = rest.log,
                            .productCodes = [&] { return &codes; },
                            .randomNumber = [&] { return random(); }});
  print("preferred", choice.findPreferredDestinationFor(product));
  const Text applications = choice.applicationsDirectory();
  print("applications", applications);
  print("shown", choice.localizedPath(Paths::appending(applications, product + Text(".app"))));
  std::printf("writable %d\n",
              choice.canWriteToPath(Paths::appending(applications, "New/" + product.bytes() + ".app")));
  std::printf("directory %d\n", choice.canWriteToDirectory(applications));
  for (const std::string& line : rest.log.lines()) std::printf("log %s\n", line.c_str());
}

}  // namespace
}  // namespace halvorn

int main(int argc, char** argv) {
  if (argc < 2) return 64;
  std::vector<halvorn::Text> codes;
  for (int i = 2; i < argc; ++i) codes.push_back(argv[i]);
  halvorn::choose(argv[1], codes);
  return 0;
}
