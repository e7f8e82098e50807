#include "KTStuff/KTClasses/KTUtilitiesScripts.h"

#include <string>

#include "Core/Format.h"
#include "Core/Paths.h"
#include "Core/PropertyValue.h"

namespace halvorn {

namespace {

constexpr double kPollInterval = 0.001;  // seconds

OptionalText textFromUtf8(const std::optional<std::string>& bytes) {
  return bytes ? Text::fromStrictUtf8(*bytes) : std::nullopt;
}

}  // namespace

KTUtilitiesScripts::KTUtilitiesScripts(Tasks& tasks, TemporaryFiles& temporaryFiles,
                                       const SearchPaths& searchPaths, Clock& clock, const Log& log)
    : tasks_(tasks), temporaryFiles_(temporaryFiles), searchPaths_(searchPaths), clock_(clock), log_(log) {}

OptionalText KTUtilitiesScripts::runShellScript(const Text& path,
                                                const std::optional<std::vector<Text>>& withParameters,
                                                double timeout) {
  const Text home = searchPaths_.homeFolder();
  const Text script = Paths::expandingTilde(
      path, home, [this](const Text& account) { return searchPaths_.homeFolderOf(account); });
  const Text scriptName = Paths::lastComponent(script);
  const OptionalText outputFile = temporaryFiles_.create();
  if (!outputFile) return format("script %@ failed: %@", scriptName, "no temporary file for its output");

  const TaskLaunch launch =
      tasks_.launch(script, withParameters.value_or(std::vector<Text>()), home, *outputFile);
  // KEEP: the temporary file of a script that could not be started stays.
  if (!launch.task) return format("script %@ failed: %@", scriptName, launch.failure);

  watch(*launch.task, scriptName, withParameters, timeout);
  launch.task->terminate();
  // The script may still run and write: what is in the file now is the answer.
  const auto output = temporaryFiles_.contents(*outputFile);
  temporaryFiles_.remove(*outputFile);
  return textFromUtf8(output);
}

void KTUtilitiesScripts::watch(Task& task, const Text& scriptName,
                               const std::optional<std::vector<Text>>& parameters, double timeout) {
  const double start = clock_.monotonicSeconds();
  while (task.isRunning()) {
    // KEEP: single precision; a limit of 0 is over at the first look, since starting a program takes time.
    const float elapsed = static_cast<float>(clock_.monotonicSeconds() - start);
    if (elapsed > timeout) {
      const OptionalText list = parameters ? OptionalText(describe(*parameters)) : std::nullopt;
      log_("script timeout: %@ %@", scriptName, list);
      task.terminate();
      return;
    }
    clock_.sleep(kPollInterval);
  }
}

OptionalText KTUtilitiesScripts::shellCommandResult(const Text& command) {
  return textFromUtf8(tasks_.standardOutputOf("/bin/sh", {"-c", command}));
}

}  // namespace halvorn
