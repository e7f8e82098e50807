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

// The rights for a tool that runs or has run by now.
class PolkitAuthorization : public Authorization {
 public:
  PolkitAuthorization(const Log& log, std::unique_ptr<PkexecRun> run) : log_(log), run_(std::move(run)) {}

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
  ToolEnd run() override { return ToolNotStarted{error_}; }

 private:
  int error_;
};

Authorizer::Result grantedInVain(int error) {
  return {AuthorizationAnswer::Granted, std::make_unique<EmptyAuthorization>(error)};
}

void logObstacle(const Log& log, const Text& tool, const ToolObstacle& obstacle) {
  const Text reason(::strerrordesc_np(obstacle.error));
  switch (obstacle.kind) {
    case ToolObstacle::Kind::NoAbsolutePath:
      if (tool.isEmpty()) return log("The installer has no tool for the administrator");
      return log("The administrator's tool '%@' is not named by an absolute path", tool);
    case ToolObstacle::Kind::Disguised:
      return log("The administrator's tool '%@' is not asked for: its path would be shown as another", tool);
    case ToolObstacle::Kind::Missing:
      return log("The administrator's tool '%@' is missing: %@", tool, reason);
    case ToolObstacle::Kind::NotAFile:
      return log("The administrator's tool '%@' is not a file", tool);
    case ToolObstacle::Kind::NotExecutable:
      return log("The administrator's tool '%@' is not executable", tool);
    case ToolObstacle::Kind::MediumNoexec:
      return log("The administrator's tool '%@' cannot run: its medium is mounted noexec", tool);
    case ToolObstacle::Kind::MediumPrivate:
      return log("The administrator's tool '%@' cannot run: its medium (FUSE) is closed to the administrator",
                 tool);
  }
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
    logObstacle(log_, toolPath, *obstacle);
    return grantedInVain(obstacle->error);
  }
  std::vector<std::string> words;
  if (!toBytes(arguments, words)) {
    log_("The administrator's tool was not started: an argument holds a NUL character");
    return grantedInVain(EINVAL);
  }
  const OptionalText pkexec = firstExecutable(programs_.pkexec);
  if (!pkexec) {
    log_("No administrator rights: this system has no pkexec");
    return {};
  }
  auto [run, error] = start(pkexec->bytes(), toolPath.bytes(), words);
  if (run == nullptr && error == 0) return withdrawn();
  if (run == nullptr) {
    log_("No administrator rights: %@ could not be started: %@", pkexec, ::strerrordesc_np(error));
    return {};
  }
  const PkexecRun::Moment moment = run->waitForStartOrEnd();
  const bool nobodyAsks = stopAsking();
  if (moment == PkexecRun::Moment::Ended) {
    const PkexecRun::End& end = run->waitForEnd();
    if (!end.toolRan) return nobodyAsks ? withdrawn() : answerOfPkexec(*run, end.waitStatus);
  }
  return {AuthorizationAnswer::Granted, std::make_unique<PolkitAuthorization>(log_, std::move(run))};
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

Authorizer::Result PolkitAuthorizer::answerOfPkexec(const PkexecRun& run,
                                                    std::optional<int> waitStatus) const {
  if (waitStatus && WIFSIGNALED(*waitStatus)) {
    log_("No administrator rights: pkexec was ended by signal %d", WTERMSIG(*waitStatus));
    return {};
  }
  if (waitStatus && WEXITSTATUS(*waitStatus) == kExitDismissed) {
    log_("No administrator rights: the request was dismissed");
    return {AuthorizationAnswer::Canceled, nullptr};
  }
  const Text said = Text(run.complaint()).trimmed();
  switch (complaintFrom(run.complaint())) {
    case PkexecComplaint::NotAuthorized:
      logNotAuthorized();
      return {};
    case PkexecComplaint::NoAgent:
      log_("No administrator rights: no authentication agent runs in this session (%@)", said);
      return {};
    case PkexecComplaint::NoSystemBus:
      log_("No administrator rights: the system bus does not answer (%@)", said);
      return {};
    case PkexecComplaint::NoPolicyDaemon:
      log_("No administrator rights: the policy daemon does not answer (%@)", said);
      return {};
    case PkexecComplaint::NotPrivileged:
      log_("No administrator rights: pkexec has no rights itself here (%@)", said);
      return {};
    case PkexecComplaint::ToolUnreachable:
      log_("The administrator's tool cannot be reached by the administrator (%@)", said);
      return grantedInVain(EACCES);
    case PkexecComplaint::ToolUnstartable:
      log_("The administrator's tool could not be started (%@)", said);
      return grantedInVain(ENOEXEC);
    case PkexecComplaint::Unknown:
      break;
  }
  log_("No administrator rights: pkexec failed (%@)", said);
  return {};
}

void PolkitAuthorizer::logNotAuthorized() const {
  const OptionalText pkcheck = firstExecutable(programs_.pkcheck);
  switch (pkcheck ? askPolicy(pkcheck->bytes()) : PolicyAnswer::Unknown) {
    case PolicyAnswer::Refuses:
      return log_("No administrator rights: the policy of this system refuses them");
    case PolicyAnswer::AsksForPassword:
      return log_("No administrator rights: not authenticated, the password was not accepted");
    case PolicyAnswer::Unknown:
      return log_("No administrator rights: not authorized");
  }
}

}  // namespace halvorn
