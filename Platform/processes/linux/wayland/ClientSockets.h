// Which processes are connected to the compositor of this session, by the kernel's own list of sockets: proof
// of the session, whatever the environment of a process says.
// Why: docs/decisions/030-wayland.md
#pragma once

#include <sys/types.h>

#include <set>
#include <string>
#include <vector>

namespace halvorn {

class ProcFiles;

enum class Membership {
  Here,       // connected to the compositor of this session
  Elsewhere,  // to another one, and not to this one
  Untold      // to none
};

// Thread: any.
class ClientSockets {
 public:
  // `socketPath` as waylandSocketPath() tells it; "" where there is no compositor: nobody is its client then.
  ClientSockets(std::string socketPath, const ProcFiles& files);

  // What the kernel said at one moment.
  class Look {
   public:
    [[nodiscard]] Membership of(pid_t pid) const;
    // The clients' ends of the connections to this compositor.
    [[nodiscard]] const std::set<ino_t>& here() const { return here_; }

   private:
    friend class ClientSockets;
    explicit Look(const ProcFiles& files) : files_(&files) {}

    const ProcFiles* files_;
    std::set<ino_t> here_;
    std::set<ino_t> elsewhere_;
  };
  [[nodiscard]] Look look() const;

 private:
  const std::string socketPath_;
  const ProcFiles& files_;
};

}  // namespace halvorn
