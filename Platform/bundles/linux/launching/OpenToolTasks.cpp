#include "Platform/bundles/linux/launching/OpenToolTasks.h"

#include "Platform/bundles/Workspace.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/files/linux/FoundItem.h"

namespace halvorn {

OpenToolTasks::OpenToolTasks(Tasks& tasks, Workspace& workspace, const Text& openTool)
    : tasks_(tasks), workspace_(workspace), openTool_(openTool) {}

TaskLaunch OpenToolTasks::launch(const Text& executable, const std::vector<Text>& arguments,
                                 const Text& workingFolder, const Text& outputFile) {
  return tasks_.launch(executable, arguments, workingFolder, outputFile);
}

void OpenToolTasks::launchAndForget(const Text& executable, const std::vector<Text>& arguments) {
  const bool isOpenTool = executable == openTool_ && arguments.size() == 1;
  if (isOpenTool && (isApplicationBundle(arguments.front()) || !findItem(openTool_.bytes()))) {
    (void)workspace_.openFile(arguments.front());  // forgotten, as its result is for the tool's caller too
  } else {
    tasks_.launchAndForget(executable, arguments);
  }
}

std::optional<std::string> OpenToolTasks::standardOutputOf(const Text& executable,
                                                           const std::vector<Text>& arguments) {
  return tasks_.standardOutputOf(executable, arguments);
}

}  // namespace halvorn
