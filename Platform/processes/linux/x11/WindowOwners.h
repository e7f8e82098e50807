// Which process owns which window.
#pragma once

#include <sys/types.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Platform/processes/linux/x11/WindowManagerConnection.h"

namespace halvorn {

class ProcFiles;

// What is known of a window's owner.
struct OwnerEvidence {
  std::optional<std::string> machine;  // WM_CLIENT_MACHINE, set by the program
  std::optional<pid_t> claimed;        // _NET_WM_PID, set by the program
  std::optional<pid_t> connected;      // the server's own knowledge of who is connected
  // Of the connected process: its process ids in the namespaces around it.
  std::vector<pid_t> connectedNamespacePids;
};
// The owner when the evidence agrees; nullopt when it contradicts itself or does not suffice.
// A program of another machine has a process id that means nothing here, and one in a
// container claims the id it has in there.
[[nodiscard]] std::optional<pid_t> ownerFrom(const OwnerEvidence& evidence, const std::string& thisMachine);

class WindowOwners {
 public:
  WindowOwners(WindowManagerConnection& connection, const ProcFiles& files);

  // The owners in the order of the windows. Windows seen before are not asked for again as long as they are
  // part of every list.
  [[nodiscard]] std::vector<std::optional<pid_t>> of(const std::vector<xcb_window_t>& windows);

 private:
  [[nodiscard]] std::vector<OwnerEvidence> evidenceFor(const std::vector<xcb_window_t>& windows);
  void addConnectedPids(const std::vector<xcb_window_t>& windows, std::vector<OwnerEvidence>& evidence);

  WindowManagerConnection& connection_;
  const ProcFiles& files_;
  const std::string thisMachine_;
  std::mutex mutex_;
  std::map<xcb_window_t, pid_t> known_;
};

}  // namespace halvorn
