// One application's being asked to end, by whoever asks and however often: its windows are closed, and what does
// not answer that within a moment gets SIGTERM, once.
// Why: docs/decisions/013-who-is-quit-and-how.md
#pragma once

#include <mutex>
#include <vector>

#include "Platform/processes/linux/proc/WindowSystem.h"

namespace halvorn {

class TerminateRequest {
 public:
  // Does what is due: something at the first call, later mostly nothing. `now` in seconds, by a clock that never
  // goes back. Thread: any.
  void carryOn(const ProcessHold& process, WindowSystem& windows, double now);

 private:
  enum class Stage { NotBegun, WindowsAsked, WindowsClosing, Done };
  void begin(const ProcessHold& process, WindowSystem& windows, double now);
  void lookForAnswer(const ProcessHold& process, WindowSystem& windows);
  void sendSignal(const ProcessHold& process);

  std::mutex mutex_;  // guards what follows
  Stage stage_ = Stage::NotBegun;
  double nextLook_ = 0;
  std::vector<WindowSystem::WindowNumber> windowsBefore_;
};

}  // namespace halvorn
