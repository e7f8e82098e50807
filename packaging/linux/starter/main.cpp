// One file to double-click: unpacks what lies behind this program into a private folder of the person's, starts the
// "Install ..." in it with this program's arguments, and removes the folder when that has ended. With "--unpack FOLDER" it
// unpacks there and starts nothing. It is linked statically and needs tar. Why: docs/decisions/036-one-file.md
#include <dirent.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <vector>

#include "packaging/linux/starter/Payload.h"
#include "packaging/linux/starter/PrivateFolder.h"
#include "packaging/linux/starter/Tell.h"

namespace halvorn {
namespace {

constexpr int kNothingInside = 66;  // no payload, or a damaged one
constexpr int kNoPlace = 69;        // nowhere to unpack to
constexpr char kDamaged[] = "This file is damaged: it could not be unpacked.";

volatile sig_atomic_t child = 0;
volatile sig_atomic_t received = 0;  // the first signal that asked for the end

// Whoever is asked to end ends what was started, and nothing is left lying about.
void passOn(int signal) {
  received = signal;
  if (child > 0) ::kill(child, signal);
}

void listenForTheEnd() {
  struct sigaction action {};
  action.sa_handler = passOn;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::sigaction(signal, &action, nullptr);
}

int say(const std::string& sentence, int status) {
  tell("Installer", sentence);
  return status;
}

// What an image has for a person to start: "" where there is none.
std::string starterIn(const std::string& folder) {
  std::string found;
  DIR* const listing = ::opendir(folder.c_str());
  if (listing == nullptr) return found;
  while (const dirent* entry = ::readdir(listing)) {
    const std::string name = entry->d_name;
    if (name.starts_with("Install ") && ::access((folder + "/" + name).c_str(), X_OK) == 0 &&
        !name.ends_with(".desktop"))
      found = folder + "/" + name;
  }
  ::closedir(listing);
  return found;
}

int startAndWait(std::string program, char** arguments) {
  std::vector<char*> words = {program.data()};
  while (*++arguments != nullptr) words.push_back(*arguments);
  words.push_back(nullptr);
  pid_t pid = -1;
  if (::posix_spawn(&pid, program.c_str(), nullptr, nullptr, words.data(), environ) != 0)
    return say("What was unpacked cannot be started: " + program, kNothingInside);
  child = pid;
  if (received != 0) ::kill(pid, received);  // it may have come just before
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// For who wants to look before anything is started.
int unpackTo(const Payload& payload, const std::string& folder) {
  if (::mkdir(folder.c_str(), 0755) != 0)
    return say(folder + " cannot be made: " + std::strerror(errno), kNoPlace);
  return unpack(payload, folder) ? 0 : say(kDamaged, kNothingInside);
}

int run(char** arguments) {
  // Unpacking ends by itself when nobody reads any more.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
  listenForTheEnd();
  const auto payload = payloadOf("/proc/self/exe");
  if (!payload) return say("This file is damaged: there is nothing in it to install.", kNothingInside);
  if (arguments[1] != nullptr && arguments[1] == std::string("--unpack") && arguments[2] != nullptr)
    return unpackTo(*payload, arguments[2]);
  const PrivateFolder folder =
      makePrivateFolder(placesForPrivateFolders(), static_cast<unsigned long long>(payload->unpackedSize));
  if (folder.path.empty()) return say(folder.problem, kNoPlace);
  int status = kNothingInside;
  if (!unpack(*payload, folder.path)) {
    status = say(kDamaged, kNothingInside);
  } else if (received != 0) {
    status = 128 + received;
  } else if (const std::string program = starterIn(folder.path); program.empty()) {
    status = say("There is nothing to start in this file.", kNothingInside);
  } else {
    std::signal(SIGPIPE, SIG_DFL);
    status = startAndWait(program, arguments);
  }
  removeFolder(folder.path);
  return status;
}

}  // namespace
}  // namespace halvorn

int main(int /*count*/, char** arguments) { return halvorn::run(arguments); }
