#include "Platform/processes/linux/wayland/ClientSockets.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/wayland/UnixSockets.h"

namespace halvorn {
namespace {

// By this part of its name every client knows a compositor's socket.
constexpr char kUsualName[] = "wayland-";

std::string resolved(const std::string& path) {
  std::error_code failed;
  const auto result = std::filesystem::weakly_canonical(path, failed);
  return failed ? path : result.string();
}

// Whether it was made of the very file that lies at the path. Only where the file system numbers its files for
// programs as it does for itself.
bool isOf(const UnixSocket& socket, const struct stat& file) {
  // The kernel puts the minor number into twenty bits.
  const auto device = (major(file.st_dev) << 20U) | minor(file.st_dev);
  return socket.fileNumber == static_cast<std::uint32_t>(file.st_ino) && socket.fileDevice == device;
}

}  // namespace

ClientSockets::ClientSockets(std::string socketPath, const ProcFiles& files)
    : socketPath_(std::move(socketPath)), files_(files) {}

ClientSockets::Look ClientSockets::look() const {
  Look result(files_);
  if (socketPath_.empty()) return result;
  const std::string name = std::filesystem::path(socketPath_).filename();
  std::vector<UnixSocket> ours;
  std::map<std::string, std::string> known;  // what a path is with its links followed
  for (UnixSocket& socket : unixSockets()) {
    if (socket.path.empty()) continue;
    const auto [place, isNew] = known.try_emplace(socket.path);
    if (isNew) place->second = resolved(socket.path);
    if (place->second == socketPath_) {
      ours.push_back(std::move(socket));
    } else if (const std::string file = std::filesystem::path(place->second).filename();
               socket.peer != 0 && (file == name || file.starts_with(kUsualName))) {
      result.elsewhere_.insert(socket.peer);
    }
  }
  // A container has paths of its own, and maybe the same one.
  struct stat file {};
  const bool isThere = ::stat(socketPath_.c_str(), &file) == 0;
  const bool isTold = isThere && std::any_of(ours.begin(), ours.end(), [&](const UnixSocket& socket) {
                        return socket.isListening && isOf(socket, file);
                      });
  for (const UnixSocket& socket : ours) {
    if (socket.peer == 0) continue;
    (isTold && !isOf(socket, file) ? result.elsewhere_ : result.here_).insert(socket.peer);
  }
  return result;
}

Membership ClientSockets::Look::of(pid_t pid) const {
  if (here_.empty() && elsewhere_.empty()) return Membership::Untold;
  Membership result = Membership::Untold;
  for (const ino_t number : files_->sockets(pid)) {
    if (here_.contains(number)) return Membership::Here;
    if (elsewhere_.contains(number)) result = Membership::Elsewhere;
  }
  return result;
}

}  // namespace halvorn
