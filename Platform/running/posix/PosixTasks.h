// Programs started with posix_spawn.
#pragma once

#include <memory>

#include "Platform/running/Tasks.h"

namespace halvorn {

class PosixTasks : public Tasks {
 public:
  PosixTasks();
  ~PosixTasks() override;

  TaskLaunch launch(const Text& executable, const std::vector<Text>& arguments, const Text& workingFolder,
                    const Text& outputFile) override;
  void launchAndForget(const Text& executable, const std::vector<Text>& arguments) override;
  std::optional<std::string> standardOutputOf(const Text& executable,
                                              const std::vector<Text>& arguments) override;

  // Collects the exit statuses of children that nobody waits for, so that none stays a zombie.
  class Orphanage;

 private:
  std::shared_ptr<Orphanage> orphanage_;  // shared with the tasks, which may outlive this object
};

}  // namespace halvorn
