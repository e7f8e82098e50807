#include "Platform/rights/linux/PolkitAuthorizer.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "Core/Log.h"
#include "Platform/rights/linux/PkexecComplaint.h"
#include "Platform/rights/linux/PkexecRun.h"
#include "Platform/rights/linux/PolicyQuestion.h"
#include "Platform/rights/linux/ToolObstacle.h"

namespace halvorn {
namespace {

constexpr int kExitDismissed = 126;
constexpr char kNoPkexec[] = "No administrator rights: this system has no pkexec";

// The rights for a tool that runs or has run by now.
class PolkitAuthorization : public Authorization {
 public:
  PolkitAuthorization(const Log& log, std::unique_ptr<PkexecRun> run) : log_(log), run_(std::move(run)) {}

  void whenCopied(std::function<void(std::uint64_t)> copied) override { run_->whenCopied(std::move(copied)); }
  ToolEnd run() override {
    const auto waitStatus = run_->waitForEnd().waitStatus;
    if (!waitStatus) return ToolUnknown{};
    if (WIFSIGNALED(*waitStatus)) {
      log_("The administrator's tool was ended by signal %d", WTERMSIG(*waitStatus));
      return ToolDied{WTERMSIG(*waitStatus)};
    }
    const int status = WEXITSTATUS(*waitStatus);
    if (status != 0) log_("The administrator's tool ended with status %d", status);
    return ToolExited{status};
  }

 private:
  const Log& log_;
  std::unique_ptr<PkexecRun> run_;
};

// The rights for a tool that cannot be started.
class EmptyAuthorization : public Authorization {
 public:
  explicit EmptyAuthorization(int error) : error_(error) {}
  void whenCopied(std::function<void(std::uint64_t)>) override {}
  ToolEnd run() override { return ToolNotStarted{error_}; }

 private:
  int error_;
};

Authorizer::Result grantedInVain(int error, const Text& reason) {
  return {AuthorizationAnswer::Granted, std::make_unique<EmptyAuthorization>(error), reason};
}

Text sentenceOf(const ToolObstacle& obstacle, const Text& tool) {
  const Text reason(::strerrordesc_np(obstacle.error));
  switch (obstacle.kind) {
    case ToolObstacle::Kind::NoAbsolutePath:
      if (tool.isEmpty()) return "The installer has no tool for the administrator";
      return format("The administrator's tool '%@' is not named by an absolute path", tool);
    case ToolObstacle::Kind::Disguised:
      return format("The administrator's tool '%@' is not asked for: its path would be shown as another",
                    tool);
    case ToolObstacle::Kind::Missing:
      return format("The administrator's tool '%@' is missing: %@", tool, reason);
    case ToolObstacle::Kind::NotAFile:
      return format("The administrator's tool '%@' is not a file", tool);
    case ToolObstacle::Kind::NotExecutable:
      return format("The administrator's tool '%@' is not executable", tool);
    case ToolObstacle::Kind::MediumNoexec:
      return format("The administrator's tool '%@' cannot run: its medium is mounted noexec", tool);
    case ToolObstacle::Kind::MediumPrivate:
      return format(
          "The administrator's tool '%@' cannot run: its medium (FUSE) is closed to the administrator", tool);
  }
  return {};
}

// The dialog of an action that a package brought shows what will be run, and some dialogs show that of every action.
Text sentenceOf(const WordsObstacle& obstacle) {
  if (obstacle.kind == WordsObstacle::Kind::Disguised)
    return format("The administrator's tool is not asked for: '%@' would be shown as another", obstacle.word);
  return "The administrator's tool is not asked for: its paths are longer than a dialog shows";
}

OptionalText firstExecutable(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (::access(path.c_str(), X_OK) == 0) return Text(path);
  }
  return std::nullopt;
}

bool toBytes(const std::vector<Text>& texts, std::vector<std::string>& bytes) {
  for (const Text& text : texts) {
    bytes.push_back(text.bytes());
    // The system would take what stands before the NUL for the whole argument.
    if (bytes.back().find('\0') != std::string::npos) return false;
  }
  return true;
}

}  // namespace

PolkitAuthorizer::PolkitAuthorizer(const Log& log, PolkitPrograms programs)
    : log_(log), programs_(std::move(programs)) {}

Authorizer::Result PolkitAuthorizer::requestAdministratorRights(const Text& toolPath,
                                                                const std::vector<Text>& arguments) {
  if (isWithdrawn()) return withdrawn();
  if (const auto obstacle = obstacleToTool(toolPath.bytes())) {
    return grantedInVain(obstacle->error, logged(sentenceOf(*obstacle, toolPath)));
  }
  std::vector<std::string> words;
  if (!toBytes(arguments, words)) {
    return grantedInVain(
        EINVAL, logged("The administrator's tool was not started: an argument holds a NUL character"));
  }
  if (const auto obstacle = obstacleToShowing(arguments)) {
    return grantedInVain(EINVAL, logged(sentenceOf(*obstacle)));
  }
  const OptionalText pkexec = firstExecutable(programs_.pkexec);
  if (!pkexec) return refused(kNoPkexec);
  auto [run, error] = start(pkexec->bytes(), toolPath.bytes(), words);
  if (run == nullptr && error == 0) return withdrawn();
  if (run == nullptr)
    return refused(
        format("No administrator rights: %@ could not be started: %@", pkexec, ::strerrordesc_np(error)));
  const PkexecRun::Moment moment = run->waitForStartOrEnd();
  const bool nobodyAsks = stopAsking();
  if (moment == PkexecRun::Moment::Ended) {
    const PkexecRun::End& end = run->waitForEnd();
    if (!end.toolRan) return nobodyAsks ? withdrawn() : answerOfPkexec(*run, end.waitStatus);
  }
  return {AuthorizationAnswer::Granted, std::make_unique<PolkitAuthorization>(log_, std::move(run))};
}

OptionalText PolkitAuthorizer::obstacleTo(const Text& toolPath, const std::vector<Text>& arguments) const {
  if (const auto obstacle = obstacleToTool(toolPath.bytes())) return sentenceOf(*obstacle, toolPath);
  if (const auto obstacle = obstacleToShowing(arguments)) return sentenceOf(*obstacle);
  return firstExecutable(programs_.pkexec) ? std::nullopt : OptionalText(kNoPkexec);
}

void PolkitAuthorizer::withdraw() {
  const std::lock_guard lock(mutex_);
  isWithdrawn_ = true;
  if (asking_ != nullptr) asking_->withdraw();
}

bool PolkitAuthorizer::isWithdrawn() {
  const std::lock_guard lock(mutex_);
  return isWithdrawn_;
}

// Under the lock, so that a withdrawal finds either nothing started yet or something to end.
PolkitAuthorizer::Started PolkitAuthorizer::start(const std::string& pkexec, const std::string& tool,
                                                  const std::vector<std::string>& words) {
  const std::lock_guard lock(mutex_);
  Started started;
  if (isWithdrawn_) return started;
  started.run = PkexecRun::start(pkexec, tool, words, started.error);
  asking_ = started.run.get();
  return started;
}

bool PolkitAuthorizer::stopAsking() {
  const std::lock_guard lock(mutex_);
  asking_ = nullptr;
  return isWithdrawn_;
}

Authorizer::Result PolkitAuthorizer::withdrawn() const {
  log_("No administrator rights: the request was withdrawn");
  return {AuthorizationAnswer::Canceled, nullptr};
}

Text PolkitAuthorizer::logged(const Text& sentence) const {
  log_("%@", sentence);
  return sentence;
}

Authorizer::Result PolkitAuthorizer::refused(const Text& sentence) const {
  return {AuthorizationAnswer::Refused, nullptr, logged(sentence)};
}

Authorizer::Result PolkitAuthorizer::answerOfPkexec(const PkexecRun& run,
                                                    std::optional<int> waitStatus) const {
  if (waitStatus && WIFSIGNALED(*waitStatus))
    return refused(format("No administrator rights: pkexec was ended by signal %d", WTERMSIG(*waitStatus)));
  if (waitStatus && WEXITSTATUS(*waitStatus) == kExitDismissed) {
    log_("No administrator rights: the request was dismissed");
    return {AuthorizationAnswer::Canceled, nullptr};
  }
  const Text said = Text(run.complaint()).trimmed();
  switch (complaintFrom(run.complaint())) {
    case PkexecComplaint::NotAuthorized:
      return refused(whyNotAuthorized());
    case PkexecComplaint::NoAgent:
      return refused(
          format("No administrator rights: no authentication agent runs in this session (%@)", said));
    case PkexecComplaint::NoSystemBus:
      return refused(format("No administrator rights: the system bus does not answer (%@)", said));
    case PkexecComplaint::NoPolicyDaemon:
      return refused(format("No administrator rights: the policy daemon does not answer (%@)", said));
    case PkexecComplaint::NotPrivileged:
      return refused(format("No administrator rights: pkexec has no rights itself here (%@)", said));
    case PkexecComplaint::ToolUnreachable:
      return grantedInVain(
          EACCES,
          logged(format("The administrator's tool cannot be reached by the administrator (%@)", said)));
    case PkexecComplaint::ToolUnstartable:
      return grantedInVain(ENOEXEC,
                           logged(format("The administrator's tool could not be started (%@)", said)));
    case PkexecComplaint::Unknown:
      break;
  }
  return refused(format("No administrator rights: pkexec failed (%@)", said));
}

Text PolkitAuthorizer::whyNotAuthorized() const {
  const OptionalText pkcheck = firstExecutable(programs_.pkcheck);
  switch (pkcheck ? askPolicy(pkcheck->bytes()) : PolicyAnswer::Unknown) {
    case PolicyAnswer::Refuses:
      return "No administrator rights: the policy of this system refuses them";
    case PolicyAnswer::AsksForPassword:
      return "No administrator rights: not authenticated, the password was not accepted";
    case PolicyAnswer::Unknown:
      break;
  }
  return "No administrator rights: not authorized";
}

}  // namespace halvorn
