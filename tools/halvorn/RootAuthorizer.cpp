#include "tools/halvorn/RootAuthorizer.h"

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

  ToolEnd run() override {
    std::vector<char*> arguments;
    for (std::string& word : words_) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, arguments[0], nullptr, nullptr, arguments.data(), ::environ);
    if (error != 0) return ToolNotStarted{error};
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
      if (errno != EINTR) return ToolUnknown{};
    }
    if (WIFSIGNALED(status)) return ToolDied{WTERMSIG(status)};
    return ToolExited{WEXITSTATUS(status)};
  }

 private:
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
