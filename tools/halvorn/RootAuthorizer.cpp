#include "tools/halvorn/RootAuthorizer.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace halvorn {
namespace {

class RootAuthorization : public Authorization {
 public:
  explicit RootAuthorization(std::vector<std::string> words) : words_(std::move(words)) {}

  void whenCopied(std::function<void(std::uint64_t)>) override {}
  ToolEnd run() override {
    std::vector<char*> arguments;
    for (std::string& word : words_) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t pid = -1;
    const int error = start(arguments, pid);
    if (error != 0) return ToolNotStarted{error};
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
      if (errno != EINTR) return ToolUnknown{};
    }
    if (WIFSIGNALED(status)) return ToolDied{WTERMSIG(status)};
    return ToolExited{WEXITSTATUS(status)};
  }

 private:
  // What the tool tells on its standard output, how much it has copied, nobody asked for.
  static int start(const std::vector<char*>& arguments, pid_t& pid) {
    posix_spawn_file_actions_t actions;
    if (const int error = ::posix_spawn_file_actions_init(&actions); error != 0) return error;
    int error = ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (error == 0) error = ::posix_spawn(&pid, arguments[0], &actions, nullptr, arguments.data(), ::environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
  }

  std::vector<std::string> words_;
};

}  // namespace

Authorizer::Result RootAuthorizer::requestAdministratorRights(const Text& toolPath,
                                                              const std::vector<Text>& arguments) {
  if (isWithdrawn_) return {AuthorizationAnswer::Canceled, nullptr};
  std::vector<std::string> words = {toolPath.bytes()};
  for (const Text& argument : arguments) words.push_back(argument.bytes());
  return {AuthorizationAnswer::Granted, std::make_unique<RootAuthorization>(std::move(words))};
}

}  // namespace halvorn
