// The signals that ask a program to end: SIGTERM, SIGHUP and SIGINT, told on the main loop.
//
// While this object exists they end nothing by themselves, however many come. One that was ignored when it
// was made (nohup) stays ignored. Programs that are started meanwhile have the actions from before: an exec
// resets what is caught.
//
// Thread: main; the signals may reach any. One object at a time.
#pragma once

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

#include "Core/Cancellation.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class TerminationSignals {
 public:
  // `received` is requested at once, also while the loop does not run; `callback` comes from the loop, with
  // the signal's number, for each that it finds.
  TerminationSignals(RunLoop& loop, Cancellation& received, std::function<void(int)> callback);
  // Puts back the actions from before.
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  struct Caught {
    int signal;
    struct sigaction before;
  };
  void tellWhatCame() const;

  std::function<void(int)> callback_;
  FileDescriptor readEnd_;
  FileDescriptor writeEnd_;
  std::unique_ptr<RunLoop::Source> source_;
  std::vector<Caught> caught_;
};

}  // namespace halvorn
