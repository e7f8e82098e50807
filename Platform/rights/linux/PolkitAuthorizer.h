// Administrator rights from polkit, through pkexec.
//
// Asking for the rights and running the tool are one on this desktop: pkexec asks and, once it may,
// turns into the tool. So the tool runs already when the rights are granted, and
// Authorization::run() waits for its end.
//
// Logs: one line for whatever keeps the tool from running or ends it badly; the tool's own lines reach the
// standard error stream as they are.
// Why: docs/decisions/014-rights-and-run-are-one.md
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Platform/rights/Authorizer.h"

namespace halvorn {

class Log;
class PkexecRun;

// Where the programs of polkit lie. The search path is not asked: it would let
// anybody's program ask for the password.
struct PolkitPrograms {
  std::vector<std::string> pkexec = {"/usr/bin/pkexec", "/usr/local/bin/pkexec", "/run/wrappers/bin/pkexec"};
  std::vector<std::string> pkcheck = {"/usr/bin/pkcheck", "/usr/local/bin/pkcheck",
                                      "/run/current-system/sw/bin/pkcheck"};
};

class PolkitAuthorizer : public Authorizer {
 public:
  explicit PolkitAuthorizer(const Log& log, PolkitPrograms programs = {});

  // The thread that asks must also call run() and outlive it.
  Result requestAdministratorRights(const Text& toolPath, const std::vector<Text>& arguments) override;
  void withdraw() override;

  // What would keep the tool from being run, as far as that is known before anybody is asked: the line that the log
  // would get. Thread: any.
  [[nodiscard]] OptionalText obstacleTo(const Text& toolPath, const std::vector<Text>& arguments) const;

 private:
  struct Started {
    std::unique_ptr<PkexecRun> run;  // null when it could not be started, or when nobody asks any more
    int error = 0;                   // the system's number; 0 when nobody asks any more
  };
  [[nodiscard]] Started start(const std::string& pkexec, const std::string& tool,
                              const std::vector<std::string>& words);
  [[nodiscard]] bool isWithdrawn();
  // From now on a withdrawal finds nobody asking; whether there has been one.
  [[nodiscard]] bool stopAsking();
  [[nodiscard]] Result withdrawn() const;
  // The answer for a pkexec that ended as itself.
  Result answerOfPkexec(const PkexecRun& run, std::optional<int> waitStatus) const;
  [[nodiscard]] Text whyNotAuthorized() const;
  // Writes the sentence into the log, and answers it.
  [[nodiscard]] Text logged(const Text& sentence) const;
  [[nodiscard]] Result refused(const Text& sentence) const;

  const Log& log_;
  PolkitPrograms programs_;

  std::mutex mutex_;  // guards what follows
  bool isWithdrawn_ = false;
  const PkexecRun* asking_ = nullptr;  // the run whose pkexec may be asking now
};

}  // namespace halvorn
