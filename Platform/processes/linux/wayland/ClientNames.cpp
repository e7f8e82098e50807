#include "Platform/processes/linux/wayland/ClientNames.h"

#include <string_view>

#include "Core/Paths.h"
#include "Platform/processes/linux/proc/ProcFiles.h"

namespace halvorn {
namespace {

constexpr std::string_view kDeleted = " (deleted)";

std::string lastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

ClientNames::ClientNames(const std::string& socketPath, const ProcFiles& files, const Bundles& bundles)
    : sockets_(socketPath, files), files_(files), programs_(files, bundles) {}

void ClientNames::refresh() {
  const auto look = sockets_.look();
  std::erase_if(clients_, [&](const auto& entry) { return !look.here().contains(entry.first); });
  std::set<ino_t> unknown;
  for (const ino_t connection : look.here()) {
    if (clients_.try_emplace(connection).second) unknown.insert(connection);
  }
  if (!unknown.empty()) findHolders(unknown);
}

void ClientNames::findHolders(const std::set<ino_t>& connections) {
  for (const pid_t pid : files_.pids()) {
    for (const ino_t number : files_.sockets(pid)) {
      if (!connections.contains(number)) continue;
      Client& client = clients_[number];
      client.pids.insert(pid);
      client.names.merge(namesOf(pid));
    }
  }
}

// What the program is called is read of its file; what it calls itself in the process table counts for nothing.
std::set<std::string> ClientNames::namesOf(pid_t pid) const {
  std::set<std::string> names;
  if (auto link = files_.executableLink(pid)) {
    if (link->ends_with(kDeleted)) link->resize(link->size() - kDeleted.size());
    names.insert(lastComponent(*link));
  }
  ProgramFinder::Walk walk;
  if (const auto program = programs_.programInBundle(pid, walk)) {
    names.insert(program->name.bytes());
    if (program->path) names.insert(Paths::deletingExtension(Paths::lastComponent(*program->path)).bytes());
    for (const char* key : {"CFBundleIdentifier", "CFBundleExecutable"}) {
      const OptionalText name = program->information ? textForKey(*program->information, key) : std::nullopt;
      if (name) names.insert(name->bytes());
    }
  }
  return names;
}

std::set<pid_t> ClientNames::clientsNamed(const std::string& applicationId) const {
  std::set<pid_t> found;
  if (applicationId.empty()) return found;
  for (const auto& [connection, client] : clients_) {
    if (client.names.contains(applicationId)) found.insert(client.pids.begin(), client.pids.end());
  }
  return found;
}

}  // namespace halvorn
