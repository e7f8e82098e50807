// What the clients of a compositor are called: the tie between a window's application and a process.
//
// Thread: one at a time.
#pragma once

#include <sys/types.h>

#include <map>
#include <set>
#include <string>

#include "Platform/processes/linux/proc/Program.h"
#include "Platform/processes/linux/wayland/ClientSockets.h"

namespace halvorn {

class ClientNames {
 public:
  // The path as waylandSocketPath() tells it. The others must outlive this object.
  ClientNames(const std::string& socketPath, const ProcFiles& files, const Bundles& bundles);

  // Looks who is connected now. Who was known stays so and costs nothing.
  void refresh();
  // The clients whose program, or the bundle around that, is called so; whoever shares their connections too.
  [[nodiscard]] std::set<pid_t> clientsNamed(const std::string& applicationId) const;

 private:
  struct Client {
    std::set<pid_t> pids;  // that hold the connection; of those that nobody could be found for, none
    std::set<std::string> names;
  };
  void findHolders(const std::set<ino_t>& connections);
  [[nodiscard]] std::set<std::string> namesOf(pid_t pid) const;

  const ClientSockets sockets_;
  const ProcFiles& files_;
  const ProgramFinder programs_;
  std::map<ino_t, Client> clients_;  // by their ends of the connections
};

}  // namespace halvorn
