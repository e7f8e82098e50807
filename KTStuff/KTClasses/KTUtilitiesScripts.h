// Shell scripts and commands, run for their output.
//
// Both calls block until the output is there. Thread: any; nothing is kept between calls.
#pragma once

#include <optional>
#include <vector>

#include "Core/Log.h"
#include "Core/Text.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/files/TemporaryFiles.h"
#include "Platform/running/Clock.h"
#include "Platform/running/Tasks.h"

namespace halvorn {

class KTUtilitiesScripts {
 public:
  // All that is passed in must outlive this object.
  KTUtilitiesScripts(Tasks& tasks, TemporaryFiles& temporaryFiles, const SearchPaths& searchPaths,
                     Clock& clock, const Log& log);

  // Runs the script, which must be executable and name its interpreter itself, in the home folder and returns
  // what it wrote to both output streams, in the order written. "~" in front of the path is expanded. After
  // `timeout` seconds the script is asked to end and not waited for; what it wrote so far is returned. Fails:
  // "script %@ failed: %@" when it cannot be started; nullopt when the output is not UTF-8. Logs: a script
  // that took too long.
  [[nodiscard]] OptionalText runShellScript(const Text& path,
                                            const std::optional<std::vector<Text>>& withParameters,
                                            double timeout);

  // The standard output of the command line, for as long as anything holds that open. No time limit.
  // Fails: nullopt when it is not UTF-8 or there is no shell.
  [[nodiscard]] OptionalText shellCommandResult(const Text& command);

 private:
  // Returns once the task has ended or the time is over.
  void watch(Task& task, const Text& scriptName, const std::optional<std::vector<Text>>& parameters,
             double timeout);

  Tasks& tasks_;
  TemporaryFiles& temporaryFiles_;
  const SearchPaths& searchPaths_;
  Clock& clock_;
  const Log& log_;
};

}  // namespace halvorn
