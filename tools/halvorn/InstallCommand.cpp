// halvorn install: the installer's own steps with a terminal's face.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>

#include "tools/halvorn/Plan.h"

namespace halvorn {
namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// The stream as it is now: the installer's steps turn the standard ones to their log file.
Stream keptStream(int descriptor) {
  return {::fdopen(::fcntl(descriptor, F_DUPFD_CLOEXEC, 3), "w"), std::fclose};
}

// What a failure came from; the log says it, and whoever sits before a terminal does not see that.
bool saysWhy(const std::string& line) {
  static constexpr const char* kBeginnings[] = {"CAUSE -- ", "ERROR -- ", "No administrator rights",
                                                "The administrator's tool", "Administrator"};
  return std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                     [&](const char* beginning) { return line.starts_with(beginning); });
}

// Tells whoever waits what happens, as it happens. Thread: any.
class Telling {
 public:
  explicit Telling(const Call& call) : call_(call) {
    isTerminal_ = !call.isJson() && ::isatty(STDERR_FILENO) == 1;
  }

  void logged(const Text& line) {
    const std::lock_guard lock(mutex_);
    if (saysWhy(line.bytes())) reasons_.push_back(line);
    if (call_.isJson()) return tell({{"event", "log"}, {"line", line}});
    if (isTerminal_) std::fprintf(call_.complaints, "\r\033[K%s", line.substring(0, kWidth).bytes().c_str());
    std::fflush(call_.complaints);
  }
  void turned(bool isTurning) {
    const std::lock_guard lock(mutex_);
    if (call_.isJson()) tell({{"event", "progress"}, {"turning", isTurning}});
  }
  void began(const PropertyDictionary& plan) {
    const std::lock_guard lock(mutex_);
    if (call_.isJson()) tell({{"event", "begun"}, {"plan", plan}});
  }
  // Before something is to stand on the terminal and stay.
  void giveWay() {
    const std::lock_guard lock(mutex_);
    clearLine();
  }
  // `outcome` in one word; `sentence` for people.
  void ended(const char* outcome, Ending ending, const Text& sentence) {
    const std::lock_guard lock(mutex_);
    if (call_.isJson())
      return tell({{"event", "ended"},
                   {"outcome", outcome},
                   {"status", static_cast<int>(ending)},
                   {"message", sentence},
                   {"reasons", PropertyArray(reasons_.begin(), reasons_.end())}});
    clearLine();
    if (ending == Ending::Done) return call_.say(sentence.bytes());
    for (const Text& part : sentence.split(u'\r')) call_.complain(shown(part));
    for (const Text& reason : reasons_) call_.complain(reason.bytes());
  }

 private:
  static constexpr std::size_t kWidth = 78;
  void clearLine() {
    if (isTerminal_) std::fputs("\r\033[K", call_.complaints);
    std::fflush(call_.complaints);
  }
  void tell(const PropertyDictionary& event) {
    call_.sayJson(event);
    std::fflush(call_.output);
  }

  const Call& call_;
  bool isTerminal_ = false;
  std::mutex mutex_;  // guards what follows, and the streams
  std::vector<Text> reasons_;
};

bool isConfirmed(const Call& call, const Plan& plan) {
  return call.isConfirmed(sentencesOf(plan) + "Install?");
}

struct End {
  const char* word;
  Ending ending;
};

End endOf(const InstallOutcome& outcome, bool isInterrupted) {
  if (outcome.kind() == InstallOutcome::Kind::Installed) return {"installed", Ending::Done};
  if (outcome.kind() == InstallOutcome::Kind::Canceled)
    return isInterrupted ? End{"interrupted", Ending::Interrupted} : End{"canceled", Ending::RightsNotGiven};
  switch (*outcome.failure()) {
    case InstallFailure::RefusedToQuit:
      return {"refusedToQuit", Ending::RefusedToQuit};
    case InstallFailure::NotTrashed:
      return {"notTrashed", Ending::NotTrashed};
    case InstallFailure::NotCopied:
      return {"notCopied", Ending::NotCopied};
    case InstallFailure::NotCopiedWithRights:
      break;
  }
  return {"notCopiedWithRights", Ending::NotCopiedWithRights};
}

Text sentenceOf(const InstallOutcome& outcome, const End& end, InstallerSteps& steps) {
  if (outcome.kind() == InstallOutcome::Kind::Installed) return steps.face().introField.stringValue();
  if (end.ending == Ending::Interrupted)
    return "interrupted before anything was touched: nothing is installed";
  if (end.ending == Ending::RightsNotGiven)
    return "administrator rights were not given: nothing is installed";
  return outcome.message();
}

}  // namespace

Ending install(const Call& given) {
  const OptionalText installer = installerFor(given);
  if (!installer) {
    given.complain("no installer's bundle was found; name it with --installer");
    return Ending::NoInput;
  }
  const Stream output = keptStream(STDOUT_FILENO);
  const Stream complaints = keptStream(STDERR_FILENO);
  if (!output || !complaints) return Ending::CannotCreate;
  const Call call{given.words, output.get(), complaints.get()};
  Telling telling(call);
  using Settings = InstallerStepsSettings;
  InstallerSteps steps({.installer = *installer,
                        .arguments = call.words.plain,
                        .logFile = Settings::LogFile::Yes,
                        .sound = Settings::Sound::Yes,
                        .enforceRights = call.words.has("--administrator") ? Settings::EnforceRights::Yes
                                                                           : Settings::EnforceRights::No,
                        .launch = call.words.has("--no-launch") ? LaunchInstalled::No : LaunchInstalled::Yes,
                        .told = [&telling](const Text& line) { telling.logged(line); },
                        .log = Settings::Log::Standard});
  steps.begin();
  const Plan plan = planOf(steps);
  const bool isHopeless = plan.ending == Ending::NothingToInstall || plan.ending == Ending::SystemTooOld;
  if (isHopeless) {
    telling.ended(plan.ending == Ending::SystemTooOld ? "systemTooOld" : "nothingToInstall", plan.ending,
                  textIn(plan.facts, "problem"));
    return plan.ending;
  }
  telling.giveWay();
  if (!isConfirmed(call, plan)) {
    telling.ended("notConfirmed", Ending::NotConfirmed, "nobody said yes (--yes): nothing is installed");
    return Ending::NotConfirmed;
  }
  telling.began(plan.facts);
  steps.face().progress.turned = [&telling](bool isTurning) { telling.turned(isTurning); };
  const InstallOutcome outcome = steps.install();
  const End end = endOf(outcome, steps.interruptedBy() != 0);
  telling.ended(end.word, end.ending, sentenceOf(outcome, end, steps));
  return end.ending;
}

}  // namespace halvorn
