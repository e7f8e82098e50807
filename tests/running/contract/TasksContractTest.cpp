// The same cases against programs that a test makes up and against real ones.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <memory>

#include "Platform/files/posix/PosixTemporaryFiles.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/PosixTasks.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeTasks.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

// A system in which a test can have a program that prints and then runs on for a while.
class World {
 public:
  virtual ~World() = default;
  virtual Tasks& tasks() = 0;
  virtual TemporaryFiles& files() = 0;
  virtual Clock& clock() = 0;
  virtual Text program(const FakeProgram& wanted) = 0;
  virtual Text folder() = 0;
};

class FakeWorld : public World {
 public:
  Tasks& tasks() override { return tasks_; }
  TemporaryFiles& files() override { return files_; }
  Clock& clock() override { return clock_; }
  Text program(const FakeProgram& wanted) override {
    tasks_.programs["/bin/program"] = wanted;
    return "/bin/program";
  }
  Text folder() override { return "/home"; }

 private:
  FakeClock clock_;
  FakeTemporaryFiles files_;
  FakeTasks tasks_{files_, clock_};
};

class RealWorld : public World {
 public:
  Tasks& tasks() override { return tasks_; }
  TemporaryFiles& files() override { return files_; }
  Clock& clock() override { return clock_; }
  Text program(const FakeProgram& wanted) override {
    const std::string path = folder_ / "program";
    std::ofstream file(path);
    file << "#!/bin/sh\n";
    if (wanted.ignoresTerminate) file << "trap '' TERM\n";
    if (!wanted.output.empty()) file << "printf %s '" << wanted.output << "'\n";
    if (!wanted.errorOutput.empty()) file << "printf %s '" << wanted.errorOutput << "' >&2\n";
    if (wanted.seconds > 0) file << "exec sleep " << wanted.seconds << "\n";
    file.close();
    ::chmod(path.c_str(), 0700);
    return path;
  }
  Text folder() override { return folder_.path().string(); }

 private:
  TemporaryFolder folder_;
  PosixTasks tasks_;
  PosixTemporaryFiles files_{Text(folder_.path().string())};
  PosixClock clock_;
};

template <typename SomeWorld>
class TasksContract : public testing::Test {
 protected:
  TaskLaunch launch(const Text& program) {
    file = *world.files().create();
    return world.tasks().launch(program, {}, world.folder(), file);
  }
  // Whether the task ends within that many seconds of the world's own time.
  bool endsWithin(Task& task, double seconds) {
    const double end = world.clock().monotonicSeconds() + seconds;
    while (task.isRunning()) {
      if (world.clock().monotonicSeconds() > end) return false;
      world.clock().sleep(0.001);
    }
    return true;
  }

  SomeWorld world;
  Text file;
};
using Worlds = testing::Types<FakeWorld, RealWorld>;
TYPED_TEST_SUITE(TasksContract, Worlds);

TYPED_TEST(TasksContract, OutputOfBothStreamsIsInTheFile) {
  const TaskLaunch launch = this->launch(this->world.program({.output = "out", .errorOutput = "err"}));
  ASSERT_TRUE(launch.task);
  EXPECT_TRUE(launch.failure.isEmpty());
  ASSERT_TRUE(this->endsWithin(*launch.task, 10));
  EXPECT_EQ(this->world.files().contents(this->file), "outerr");
}

TYPED_TEST(TasksContract, MissingProgramGivesAReasonAndNoTask) {
  const TaskLaunch launch = this->launch("/no/such/program");
  EXPECT_FALSE(launch.task);
  EXPECT_EQ(launch.failure, Text("No such file or directory"));
}

TYPED_TEST(TasksContract, TaskRunsUntilItIsAskedToEnd) {
  const TaskLaunch launch = this->launch(this->world.program({.seconds = 60}));
  ASSERT_TRUE(launch.task);
  EXPECT_TRUE(launch.task->isRunning());
  launch.task->terminate();
  EXPECT_TRUE(this->endsWithin(*launch.task, 10));
}

TYPED_TEST(TasksContract, AskingATaskThatHasEndedDoesNothing) {
  const TaskLaunch launch = this->launch(this->world.program({.output = "done"}));
  ASSERT_TRUE(launch.task);
  ASSERT_TRUE(this->endsWithin(*launch.task, 10));
  launch.task->terminate();
  EXPECT_FALSE(launch.task->isRunning());
  EXPECT_EQ(this->world.files().contents(this->file), "done");
}

TYPED_TEST(TasksContract, TaskThatIgnoresTheRequestRunsOn) {
  const TaskLaunch launch =
      this->launch(this->world.program({.output = "x", .seconds = 1, .ignoresTerminate = true}));
  ASSERT_TRUE(launch.task);
  // What it prints tells that it listens no more.
  while (this->world.files().contents(this->file) != "x") this->world.clock().sleep(0.001);
  launch.task->terminate();
  EXPECT_FALSE(this->endsWithin(*launch.task, 0.2));
}

TYPED_TEST(TasksContract, StandardOutputIsTakenAlone) {
  EXPECT_EQ(this->world.tasks().standardOutputOf(this->world.program({.output = "out"}), {}), "out");
}

TYPED_TEST(TasksContract, StandardOutputOfAMissingProgramIsNothing) {
  EXPECT_EQ(this->world.tasks().standardOutputOf("/no/such/program", {}), std::nullopt);
}

TYPED_TEST(TasksContract, TemporaryFilesAreNewEmptyAndRemovable) {
  TemporaryFiles& files = this->world.files();
  const OptionalText first = files.create();
  const OptionalText second = files.create();
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, *second);
  EXPECT_EQ(files.contents(*first), "");
  files.remove(*first);
  EXPECT_EQ(files.contents(*first), std::nullopt);
  EXPECT_EQ(files.contents(*second), "");
  files.remove(*second);
}

}  // namespace
}  // namespace halvorn
