// Programs that this one starts for its own ends and talks to through files and pipes.
//
// An executable is a path, never searched for; a relative one counts from the working folder of this program.
// It is run directly, never through a shell. What is started inherits the environment, and of the open files
// only those named below; no signal is blocked or ignored in it.
//
// Thread: any.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// A program that was started. The object may go before the program ends; that ends
// nothing and leaves nothing behind.
class Task {
 public:
  virtual ~Task() = default;
  // True until the end has been seen. Never blocks.
  [[nodiscard]] virtual bool isRunning() = 0;
  // Asks the program, and it alone, to end. Does nothing once it has ended,
  // whoever has its process id by then.
  virtual void terminate() = 0;
};

struct TaskLaunch {            // what is started, and how
  std::unique_ptr<Task> task;  // null when the program could not be started
  Text failure;                // then the reason, for people who read logs: "No such file or directory"
};

class Tasks {
 public:
  virtual ~Tasks() = default;

  // Starts the program with an empty standard input and both output streams appended to the existing file.
  [[nodiscard]] virtual TaskLaunch launch(const Text& executable, const std::vector<Text>& arguments,
                                          const Text& workingFolder, const Text& outputFile) = 0;
  // Starts the program with the standard streams and working folder of this one and forgets it.
  virtual void launchAndForget(const Text& executable, const std::vector<Text>& arguments) = 0;
  // Starts the program and returns what it writes to standard output until nothing holds that
  // open any more; its other streams are those of this program, closed ones stay closed.
  // nullopt when it could not be started.
  [[nodiscard]] virtual std::optional<std::string> standardOutputOf(const Text& executable,
                                                                    const std::vector<Text>& arguments) = 0;
};

}  // namespace halvorn
