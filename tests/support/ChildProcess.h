// A program that a test starts, watches and ends.
//
//   ChildProcess probe({zoo("kt_zoo"), "ignores-sigterm"}, {.environment = desktop.environment()});
//   ASSERT_EQ(probe.readLine(testPatience), "ready");
//
// It is ended by its pid alone, at the latest by the destructor, and dies with the test program should that
// crash. Standard output and standard error arrive together.
//
// Thread: one thread uses it; that thread must live as long as the program (the
// system ends it with its starter).
#pragma once

#include <sys/types.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace halvorn {

struct ChildOptions {
  std::vector<std::string> environment = {};  // "NAME=value", the whole of it; empty: that of the test
  std::string workingFolder = {};             // empty: that of the test
  bool newSession = false;                    // setsid()
  int signalWhenTestDies = SIGKILL;
  std::vector<int> inheritedDescriptors = {};  // kept open under the same numbers
};

// Seconds that a test waits for what must come. Long, because only a failure waits to the end of it: a
// machine that does other things too is slow, not wrong.
inline constexpr double kTestPatience = 30;

class ChildProcess {
 public:
  // The first argument is the program, searched in PATH when it has no slash. Returns once the child has become
  // that program. Throws std::runtime_error when it cannot be started.
  explicit ChildProcess(const std::vector<std::string>& arguments, const ChildOptions& options = {});
  // Kills what still runs and collects it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  // True until the end has been seen; never blocks. A zombie has ended.
  [[nodiscard]] bool isRunning();

  // The next line of output without its end; nullopt when none came in that many seconds or the output ended.
  [[nodiscard]] std::optional<std::string> readLine(double seconds);
  // Reads until the text stands in the output (lines taken by readLine() count too).
  [[nodiscard]] bool waitForOutput(const std::string& text, double seconds);
  // Everything that came so far.
  [[nodiscard]] const std::string& output() const { return output_; }

  void writeInput(const std::string& text);
  void closeInput();

  // Does nothing once the end has been seen.
  void sendSignal(int signal);
  // The exit status, or minus the number of the signal that ended it; nullopt when
  // it still runs after that time.
  [[nodiscard]] std::optional<int> waitForEnd(double seconds);
  // Sends the signal, gives it the time, then kills; the status as above.
  int end(int signal = SIGTERM, double seconds = 5.0);

 private:
  // Reads what is there, waiting at most that long; false when the output has ended.
  bool readMore(double seconds);

  pid_t pid_ = -1;
  int input_ = -1;
  int outputDescriptor_ = -1;
  std::string output_;
  std::size_t readPosition_ = 0;
  std::optional<int> status_;
};

// The output and status of a program that ends by itself within the time; status -1000 when it did not.
struct CommandResult {
  int status = -1000;
  std::string output;
};
[[nodiscard]] CommandResult runCommand(const std::vector<std::string>& arguments,
                                       const ChildOptions& options = {}, double seconds = kTestPatience);

// Whether a program of that name can be found in PATH.
[[nodiscard]] bool programExists(const std::string& name);

// Asks again and again, a few milliseconds apart, until the answer is true or the time is over.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition, double seconds = kTestPatience);

// The pause of eventually(); also the monotonic clock of the helpers above.
void pauseBriefly();
[[nodiscard]] double testSeconds();

template <typename Condition>
bool eventually(Condition condition, double seconds) {
  const double end = testSeconds() + seconds;
  while (!condition()) {
    if (testSeconds() > end) return false;
    pauseBriefly();
  }
  return true;
}

}  // namespace halvorn
