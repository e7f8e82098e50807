// halvorn: for makers and administrators, what the installer does and would do, without its window.
#include <unistd.h>

#include <csignal>

#include "tools/Json.h"
#include "tools/halvorn/Command.h"

namespace halvorn {
namespace {

constexpr char kUsage[] =
    "usage: halvorn COMMAND ... [--json]\n"
    "\n"
    "  check BUNDLE.app                what the installer reads from a product, and what will come of it\n"
    "  image BUNDLE.app -o IMAGE [--read-me FILE] [--documentation FILE] [--inside|--beside] [--sign KEY]\n"
    "                                  a medium with the product and its installer: IMAGE.squashfs, "
    "IMAGE.iso,\n"
    "                                  or IMAGE.run, one file to double-click\n"
    "  plan [-KEY VALUE ...]           what an installation here and now would do, touching nothing\n"
    "  install [-KEY VALUE ...] [--yes] [--no-launch] [--administrator]\n"
    "                                  installs without a window\n"
    "  remove NAME|BUNDLE.app [--yes]  an installed product into the Trash, and what the desktop knows of "
    "it\n"
    "  report [-o FILE]                the last installation for those who help, without names\n"
    "  audit SOURCE INSTALLED          whether the copy is what it must be, byte by byte\n"
    "\n"
    "  --installer BUNDLE              the installer's bundle; without it, the one beside halvorn\n"
    "\n"
    "-KEY VALUE: the installer's own arguments. What each exit status means is in halvorn(1).\n";

struct Verb {
  Command command;
  Grammar grammar;
};

const std::map<std::string, Verb>& verbs() {
  static const std::map<std::string, Verb> all = {
      {"audit", {audit, {.flags = {"--json"}}}},
      {"check", {check, {.flags = {"--json"}, .options = {"--installer"}}}},
      {"image",
       {image,
        {.flags = {"--json", "--inside", "--beside"},
         .options = {"--installer", "--output", "--read-me", "--documentation", "--sign"}}}},
      {"install",
       {install,
        {.flags = {"--json", "--yes", "--no-launch", "--administrator"},
         .options = {"--installer"},
         .takesInstallersWords = true}}},
      {"remove", {removeProduct, {.flags = {"--json", "--yes"}, .options = {"--installer"}}}},
      {"report", {report, {.flags = {"--json", "--yes"}, .options = {"--installer", "--output"}}}},
      {"plan", {plan, {.flags = {"--json"}, .options = {"--installer"}, .takesInstallersWords = true}}}};
  return all;
}

int misused(const std::string& sentence) {
  if (!sentence.empty()) std::fprintf(stderr, "halvorn: %s\n", sentence.c_str());
  std::fputs(kUsage, stderr);
  return static_cast<int>(Ending::Misused);
}

}  // namespace

bool Call::isConfirmed(const std::string& question) const {
  if (words.has("--yes")) return true;
  if (::isatty(STDIN_FILENO) != 1 || isJson()) return false;
  std::fputs((question + " [y/N] ").c_str(), output);
  std::fflush(output);
  char answer[16] = {};
  const bool isRead = std::fgets(answer, sizeof answer, stdin) != nullptr;
  return isRead && (answer[0] == 'y' || answer[0] == 'Y');
}

void Call::sayJson(const PropertyDictionary& object) const { say(json(object)); }

int halvornMain(std::vector<Text> words) {
  // "--json" may stand before the command, too.
  const bool isJson = !words.empty() && words.front() == Text("--json");
  if (isJson) words.erase(words.begin());
  if (words.empty()) return misused("");
  if (words.front() == Text("--help")) return std::fputs(kUsage, stdout) < 0;
  const auto verb = verbs().find(words.front().bytes());
  if (verb == verbs().end()) return misused("there is no command " + shown(words.front()));
  words.erase(words.begin());
  Call call{sortedWords(words, verb->second.grammar)};
  if (!call.words.misused.isEmpty()) return misused(shown(call.words.misused) + " is not understood");
  if (isJson) call.words.options["--json"] = Text();
  const Ending ending = verb->second.command(call);
  if (ending == Ending::Misused) return misused("");
  return static_cast<int>(std::fflush(call.output) == 0 ? ending : Ending::CannotCreate);
}

}  // namespace halvorn

int main(int count, char** arguments) {
  std::signal(SIGCHLD, SIG_DFL);
  // Whoever does not read to the end breaks nothing off.
  std::signal(SIGPIPE, SIG_IGN);
  // A file that may not grow any more is told by the call that fails.
  std::signal(SIGXFSZ, SIG_IGN);
  return halvorn::halvornMain({arguments + 1, arguments + count});
}
