// The running applications of this user and session, each held so that nothing else can be taken for it:
// by a descriptor as long as there are enough of them, else by its start time. All of them are listed.
//
// An application is a process whose program lies in a bundle, or one that owns a top-level window. Once found
// it stays one until it ends.
//
// Thread: any.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "Platform/processes/ProcessSource.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/ProcessHold.h"
#include "Platform/processes/linux/proc/Program.h"
#include "Platform/processes/linux/proc/TerminateRequest.h"
#include "Platform/processes/linux/wayland/ClientSockets.h"

namespace halvorn {

class ProcFiles;
class WindowSystem;

class HeldApplication {
 public:
  HeldApplication(ProcessSerialNumber serialNumber, ProcessHold certainty, Program whatItRuns)
      : number(serialNumber),
        pid(certainty.pid()),
        hold(std::move(certainty)),
        program(std::move(whatItRuns)) {}

  [[nodiscard]] TerminateRequest& terminateRequest() { return terminateRequest_; }

  const ProcessSerialNumber number;
  const pid_t pid;
  const ProcessHold hold;
  const Program program;  // as it was found; bundles may be replaced under a running program

 private:
  TerminateRequest terminateRequest_;
};
using HeldApplicationPointer = std::shared_ptr<HeldApplication>;

class RunningApplications {
 public:
  RunningApplications(const ProcFiles& files, const Bundles& bundles, WindowSystem& windows,
                      DesktopSession session);
  ~RunningApplications();
  RunningApplications(const RunningApplications&) = delete;
  RunningApplications& operator=(const RunningApplications&) = delete;

  // In the order in which they started.
  [[nodiscard]] std::vector<HeldApplicationPointer> all();
  // Null when no application of this user has that process id.
  [[nodiscard]] HeldApplicationPointer withPid(pid_t pid);
  // Null once it has ended.
  [[nodiscard]] HeldApplicationPointer withNumber(ProcessSerialNumber number);
  // For each whether withNumber() would find it. The kernel is asked once for all, not for each.
  [[nodiscard]] std::vector<bool> areHeld(const std::vector<ProcessSerialNumber>& numbers);
  // How many ends were seen, those of now among them.
  [[nodiscard]] std::uint64_t endsSeen();
  // This program, application or not.
  [[nodiscard]] HeldApplicationPointer thisProgram();

  // From now on launches and ends are kept for takeEvents(). `waiting` is called after the first one of a
  // batch, on the thread that saw it; null ends it. Ends are seen of what all() has found: what runs already
  // is found, and is no news, once that was asked for. Starts are told apart by ticks of the clock: what
  // started in the same one counts as news, so that no launch is lost.
  enum class Event { Launched, Ended };
  void recordEvents(std::function<void()> waiting);
  // all(), unless it was asked for since the recording began.
  void findWhatRunsAlready();
  [[nodiscard]] std::vector<Event> takeEvents();
  // Looks for applications that own windows by now; of those alone, and so quickly.
  void lookAtWindows();
  // Readable while the end of an application has not been seen by lookForEnds(); of those applications whose
  // end the system tells.
  [[nodiscard]] int endsDescriptor() const { return ends_.get(); }
  [[nodiscard]] bool isToldOfEveryEnd();
  void lookForEnds();

 private:
  enum class Wanted { InBundle, AnyProgram };
  // What one walk over the process table has learned, and the next one learns anew.
  struct Walk {
    ProgramFinder::Walk programs;
    std::optional<ClientSockets::Look> clients;
  };
  [[nodiscard]] HeldApplicationPointer knownWithPid(pid_t pid);
  HeldApplicationPointer hold(pid_t pid, Wanted wanted, Walk& walk);
  void holdOwners(Walk& walk);
  [[nodiscard]] std::vector<pid_t> notHeld(std::vector<pid_t> pids);
  [[nodiscard]] bool belongsHere(pid_t pid, Wanted wanted, Walk& walk) const;
  [[nodiscard]] bool isOfThisSession(pid_t pid, Walk& walk) const;
  HeldApplicationPointer add(ProcessHold hold, Program program);
  void retire(const HeldApplicationPointer& application);
  void retireLocked(const HeldApplicationPointer& application);
  [[nodiscard]] bool isNewsLocked(std::uint64_t startTicks) const;
  void noteLocked(Event event);
  void tellWaiting();

  const ProcFiles& files_;
  const ProgramFinder programs_;
  WindowSystem& windows_;
  const DesktopSession session_;
  const ClientSockets clients_;
  const uid_t user_;
  FileDescriptor ends_;

  std::mutex mutex_;  // guards what follows
  std::map<pid_t, HeldApplicationPointer> held_;
  std::vector<pid_t> untold_;  // of those held, the ones whose end the system will not tell by itself
  std::uint64_t endsSeen_ = 0;
  std::set<std::pair<pid_t, std::uint32_t>> given_;  // serial numbers, ever
  bool isRecording_ = false;
  bool knowsWhatRan_ = false;  // when the recording began
  std::uint64_t recordingStartTicks_ = 0;
  std::function<void()> waiting_;
  std::vector<Event> events_;
  bool hasToldWaiting_ = false;  // of the events in events_
};

}  // namespace halvorn
