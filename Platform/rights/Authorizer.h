// Administrator rights for one run of the installer's tool.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// How the tool's run ended.
struct ToolExited {
  int status = 0;  // its exit status
};
struct ToolDied {  // by a signal
  int signal = 0;  // the signal's number
};
struct ToolNotStarted {  // and nothing was done
  int status = -1;       // the platform's, never 0
};
struct ToolUnknown {};  // it was started, and its end could not be waited for
using ToolEnd = std::variant<ToolExited, ToolDied, ToolNotStarted, ToolUnknown>;  // one of these

// Rights that were granted. Freeing the object gives them back.
class Authorization {
 public:
  virtual ~Authorization() = default;
  // Has `copied` told how many bytes the tool has copied, each time that it says so; where it cannot, never. To be called
  // before run(), on whose thread it is called.
  virtual void whenCopied(std::function<void(std::uint64_t bytes)> copied) = 0;
  // Runs the tool that the rights were asked for, with administrator rights, and waits for its end.
  [[nodiscard]] virtual ToolEnd run() = 0;
};

enum class AuthorizationAnswer { Granted, Canceled, Refused };  // what the person, or the policy, said

class Authorizer {
 public:
  virtual ~Authorizer() = default;

  struct Result {                                               // the answer to the question
    AuthorizationAnswer answer = AuthorizationAnswer::Refused;  // refused unless it was given
    std::unique_ptr<Authorization> authorization;               // set when granted
    // Why the tool will not run, in the words of the log: the rights were refused or could not be asked for, or the
    // tool cannot be started with them. nullopt when it may.
    OptionalText reason = std::nullopt;
  };
  // Asks for the right to run this tool with these arguments (its own path not among them) as
  // administrator. May show the system's password dialog and then blocks the calling thread until it is
  // answered. The right covers one run: desktops whose policy starts programs itself cannot give it
  // apart from what it is for. Thread: a worker.
  [[nodiscard]] virtual Result requestAdministratorRights(const Text& toolPath,
                                                          const std::vector<Text>& arguments) = 0;

  // Nobody waits for the rights any more: the dialog goes away and the request is answered as canceled, and
  // later requests at once. Rights that were granted already stay, and a tool that runs is left alone.
  // Returns at once. Thread: any.
  virtual void withdraw() = 0;
};

}  // namespace halvorn
