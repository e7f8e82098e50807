#include "packaging/linux/starter/Tell.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

namespace halvorn {
namespace {

// Whether the program was there and did it. What it prints is for nobody.
bool did(std::vector<std::string> words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  for (const int file : {STDOUT_FILENO, STDERR_FILENO})
    ::posix_spawn_file_actions_addopen(&actions, file, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  const int error = ::posix_spawnp(&pid, pointers[0], &actions, nullptr, pointers.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  int status = -1;
  if (error == 0) ::waitpid(pid, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

void tell(const std::string& title, const std::string& sentence) {
  std::fprintf(stderr, "%s\n", sentence.c_str());
  constexpr char kService[] = "org.freedesktop.Notifications";
  if (did({"notify-send", "--", title, sentence})) return;
  (void)did({"busctl", "--user", "--", "call", kService, "/org/freedesktop/Notifications", kService, "Notify",
             "susssasa{sv}i", title, "0", "dialog-error", title, sentence, "0", "0", "-1"});
}

}  // namespace halvorn
