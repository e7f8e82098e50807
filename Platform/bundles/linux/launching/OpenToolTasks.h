// Tasks in which "/usr/bin/open" works as it does elsewhere: it launches a bundle, and hands anything else to
// that tool where the system has one, else to the desktop.
#pragma once

#include "Platform/running/Tasks.h"

namespace halvorn {

class Launcher;
class Workspace;

class OpenToolTasks : public Tasks {
 public:
  // `tasks` does everything else. `openTool` is where the tool would be.
  OpenToolTasks(Tasks& tasks, Workspace& workspace, const Text& openTool = "/usr/bin/open");

  TaskLaunch launch(const Text& executable, const std::vector<Text>& arguments, const Text& workingFolder,
                    const Text& outputFile) override;
  void launchAndForget(const Text& executable, const std::vector<Text>& arguments) override;
  std::optional<std::string> standardOutputOf(const Text& executable,
                                              const std::vector<Text>& arguments) override;

 private:
  Tasks& tasks_;
  Workspace& workspace_;
  Text openTool_;
};

}  // namespace halvorn
