// A program that asks for administrator rights as the installer does: kt_authorize_probe TOOL ARGUMENT...
//
// Prints "ready", waits for a line, asks, and prints "log: ..." for each line of the log, "answer:
// granted|canceled| refused" and, when granted, "end: exited 0|died 9|not started 13|unknown". What the tool
// says appears in between.
#include <cstdio>
#include <iostream>
#include <string>

#include "Core/Log.h"
#include "Platform/rights/linux/PolkitAuthorizer.h"

namespace {

using namespace halvorn;

void say(const std::string& line) {
  std::fputs((line + "\n").c_str(), stdout);
  std::fflush(stdout);
}

class PrintingLog : public Log {
 protected:
  void write(const Text& line) const override { say("log: " + line.bytes()); }
};

struct Spoken {
  std::string operator()(const ToolExited& end) const { return "exited " + std::to_string(end.status); }
  std::string operator()(const ToolDied& end) const { return "died " + std::to_string(end.signal); }
  std::string operator()(const ToolNotStarted& end) const {
    return "not started " + std::to_string(end.status);
  }
  std::string operator()(const ToolUnknown&) const { return "unknown"; }
};

}  // namespace

int main(int count, char** words) {
  if (count < 2) return 64;
  say("ready");
  std::string go;
  std::getline(std::cin, go);
  const PrintingLog log;
  // "without-pkexec" stands for a system that has none.
  PolkitPrograms programs;
  if (go == "without-pkexec") programs.pkexec = {"/nonexistent/pkexec"};
  PolkitAuthorizer authorizer(log, programs);
  const auto result = authorizer.requestAdministratorRights(words[1], {words + 2, words + count});
  switch (result.answer) {
    case AuthorizationAnswer::Granted:
      say("answer: granted");
      result.authorization->whenCopied([](std::uint64_t bytes) { say("copied: " + std::to_string(bytes)); });
      say("end: " + std::visit(Spoken{}, result.authorization->run()));
      return 0;
    case AuthorizationAnswer::Canceled:
      say("answer: canceled");
      return 0;
    case AuthorizationAnswer::Refused:
      say("answer: refused");
      return 0;
  }
}
