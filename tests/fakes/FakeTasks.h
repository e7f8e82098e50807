// Programs that a test makes up. They run in the time of the clock and write into FakeTemporaryFiles.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "Platform/running/Clock.h"
#include "Platform/running/Tasks.h"
#include "tests/fakes/FakeTemporaryFiles.h"

namespace halvorn {

struct FakeProgram {
  std::string output = {};       // on standard output, written at the start
  std::string errorOutput = {};  // after it, on standard error
  double seconds = 0;            // how long it runs when nobody ends it
  bool ignoresTerminate = false;
};

struct FakeTaskRecord {
  Text executable;
  std::vector<Text> arguments;
  Text workingFolder;
  int terminateRequests = 0;  // that reached it while it ran
};

class FakeTasks : public Tasks {
 public:
  FakeTasks(FakeTemporaryFiles& files, const Clock& clock) : files_(files), clock_(clock) {}

  TaskLaunch launch(const Text& executable, const std::vector<Text>& arguments, const Text& workingFolder,
                    const Text& outputFile) override {
    const auto found = programs.find(executable);
    if (found == programs.end()) return {nullptr, "No such file or directory"};
    const FakeProgram& program = found->second;
    files_.files[outputFile] += program.output + program.errorOutput;
    auto record = std::make_shared<FakeTaskRecord>(FakeTaskRecord{executable, arguments, workingFolder});
    launched.push_back(record);
    return {std::make_unique<RunningProgram>(program, std::move(record), clock_), Text()};
  }

  void launchAndForget(const Text& executable, const std::vector<Text>& arguments) override {
    forgotten.push_back({executable, arguments, Text()});
    if (onLaunchAndForget) onLaunchAndForget();
  }

  std::optional<std::string> standardOutputOf(const Text& executable,
                                              const std::vector<Text>& arguments) override {
    const auto found = programs.find(executable);
    if (found == programs.end()) return std::nullopt;
    launched.push_back(std::make_shared<FakeTaskRecord>(FakeTaskRecord{executable, arguments, Text()}));
    return found->second.output;
  }

  std::map<Text, FakeProgram> programs;  // path -> what it does
  std::vector<std::shared_ptr<FakeTaskRecord>> launched;
  std::vector<FakeTaskRecord> forgotten;
  std::function<void()> onLaunchAndForget;

 private:
  class RunningProgram : public Task {
   public:
    RunningProgram(const FakeProgram& program, std::shared_ptr<FakeTaskRecord> record, const Clock& clock)
        : program_(program), record_(std::move(record)), clock_(clock), start_(clock.monotonicSeconds()) {}
    bool isRunning() override { return !isEnded_ && clock_.monotonicSeconds() - start_ < program_.seconds; }
    void terminate() override {
      if (!isRunning()) return;
      ++record_->terminateRequests;
      isEnded_ = !program_.ignoresTerminate;
    }

   private:
    const FakeProgram program_;
    const std::shared_ptr<FakeTaskRecord> record_;
    const Clock& clock_;
    const double start_;
    bool isEnded_ = false;
  };

  FakeTemporaryFiles& files_;
  const Clock& clock_;
};

}  // namespace halvorn
