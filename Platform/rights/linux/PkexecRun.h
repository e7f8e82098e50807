// One run of pkexec: first it asks for the rights, then it becomes the tool.
//
// The tool gets one end of a socket as its standard input and shuts that end's sending side down when it
// starts; nothing else tells, while it runs, that the rights were given. Once the process has ended, the name
// it last ran under tells whether that was still pkexec.
//
// Thread: one thread starts it, waits for it and drops it, withdraw() apart. (pkexec ends when the thread
// that started it ends.)
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

class PkexecRun {
 public:
  // nullptr when it cannot be started; `error` is then the system's error number.
  [[nodiscard]] static std::unique_ptr<PkexecRun> start(const std::string& pkexecPath,
                                                        const std::string& toolPath,
                                                        const std::vector<std::string>& arguments,
                                                        int& error);
  // Leaves a running tool alone: it cannot be stopped with the rights of this
  // process, and half a copy helps nobody.
  ~PkexecRun();
  PkexecRun(const PkexecRun&) = delete;
  PkexecRun& operator=(const PkexecRun&) = delete;

  enum class Moment { ToolStarted, Ended };
  // Blocks until the tool has started or everything has ended, whichever comes first.
  [[nodiscard]] Moment waitForStartOrEnd();

  // Ends pkexec while it asks. Once it has become the tool, that is left alone. Returns at once. Thread: any,
  // as long as waitForEnd() has not been called.
  void withdraw() const;

  struct End {
    bool toolRan = false;           // else it was pkexec that ended
    std::optional<int> waitStatus;  // as waitpid() tells it; nullopt when the system does not tell
  };
  // Blocks until the process has ended; later calls answer the same at once. From the tool's start on, what
  // it says on its standard output and error goes to the standard error of this process, line by line; when
  // it was over before its start was seen, that happens in the second call.
  [[nodiscard]] const End& waitForEnd();

  // From now on told how many bytes the tool has copied so far, each time that it says so; its lines about that are not
  // passed on. Called by the thread that waits.
  void whenCopied(std::function<void(std::uint64_t bytes)> copied) { copied_ = std::move(copied); }

  // What pkexec said before any tool ran; at most some kilobytes.
  [[nodiscard]] const std::string& complaint() const { return complaint_; }

 private:
  PkexecRun(pid_t pid, std::string pkexecName, FileDescriptor signal, FileDescriptor output);

  struct Seen {
    bool toolStarted = false;
    bool ended = false;
  };
  // Waits until something happens, takes in what was said, and tells what was seen.
  Seen wait();
  [[nodiscard]] bool hasEnded() const;
  [[nodiscard]] bool isNamedPkexec(bool& isKnown) const;
  // Takes in what is there without waiting; false when nothing more will come.
  bool readOutput();
  void passOn(bool toTheLastByte);
  void passOnLine(const std::string& line) const;

  pid_t pid_;
  std::string pkexecName_;
  FileDescriptor process_;  // readable when it has ended; empty where the kernel has none
  FileDescriptor signal_;   // our end of the tool's standard input
  FileDescriptor output_;
  bool toolStarted_ = false;
  std::optional<End> end_;
  std::string complaint_;
  std::string unfinishedLine_;
  std::function<void(std::uint64_t)> copied_;
};

}  // namespace halvorn
