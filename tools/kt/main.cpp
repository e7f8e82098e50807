// kt: the class library for people and scripts.
#include "tools/kt/Command.h"

#include <charconv>
#include <csignal>
#include <set>

namespace halvorn {
namespace {

constexpr char kUsage[] =
    "usage: kt [--json] COMMAND ...\n"
    "\n"
    "  ps [--watch] [--seconds N]      the programs of this session; with --watch what becomes of them\n"
    "  quit SIGNATURE [--timeout 4]    asks the program to quit, then ends it\n"
    "  front                           the program in front\n"
    "  observe PID NAME [--seconds N]  what happens in a program's interface (AXFocusedUIElementChanged)\n"
    "  version A B                     which is older\n"
    "  desktop                         what the desktop tells\n"
    "  script FILE [WORD ...] [--limit 2]\n"
    "  command LINE                    what a shell command writes\n"
    "  open FILE                       as a double click would\n"
    "  alias FILE                      where an alias leads\n"
    "  micro                           has the helper take the front for a moment\n"
    "  sound NAME [--device NAME]      plays a sound, as alerts are played or on that device\n"
    "  sound --list | sound --devices  which there are\n"
    "  color RED GREEN BLUE RED GREEN BLUE   of a light and a dark color the one in force\n"
    "  text VERB TEXT ...              split escape expand percent html md5 trim wildcard replace detect "
    "key\n";

// Options that stand alone; every other one takes the word behind it.
const std::set<Text> kFlags = {"--json", "--watch", "--list", "--devices", "--help"};

Command commandNamed(const Text& name) {
  for (const auto* commands : {&processCommands(), &desktopCommands(), &textCommands()}) {
    if (const auto found = commands->find(name); found != commands->end()) return found->second;
  }
  return nullptr;
}

// Takes options out of the words; what stands behind "--" is none.
void sortWords(const std::vector<Text>& arguments, Call& call) {
  bool areOptions = true;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const Text& word = arguments[i];
    if (areOptions && word == Text("--")) {
      areOptions = false;
    } else if (areOptions && kFlags.contains(word)) {
      call.options[word] = Text();
    } else if (areOptions && word.hasPrefix("--")) {
      call.options[word] = i + 1 < arguments.size() ? arguments[++i] : Text();
    } else {
      call.words.push_back(word);
    }
  }
}

}  // namespace

double Call::number(const char* option, double otherwise) const {
  const auto found = options.find(option);
  if (found == options.end()) return otherwise;
  const std::string digits = found->second.bytes();
  double value = otherwise;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return read.ec == std::errc() ? value : otherwise;
}

int ktMain(const std::vector<Text>& arguments) {
  KTSystem system(arguments, {.programName = "kt"});
  Call call{system, {}, {}};
  sortWords(arguments, call);
  if (call.has("--json")) call.form = AnswerForm::Json;
  const bool asksForHelp = call.has("--help");
  const Command command = call.words.empty() ? nullptr : commandNamed(call.words.front());
  if (asksForHelp || command == nullptr) {
    std::fputs(kUsage, asksForHelp ? stdout : stderr);
    return static_cast<int>(asksForHelp ? Outcome::Done : Outcome::Misused);
  }
  call.words.erase(call.words.begin());
  const Outcome outcome = command(call);
  if (outcome == Outcome::Misused) std::fputs(kUsage, stderr);
  return static_cast<int>(std::fflush(stdout) == 0 ? outcome : Outcome::No);
}

}  // namespace halvorn

int main(int count, char** arguments) {
  return halvorn::ktMain(std::vector<halvorn::Text>(arguments, arguments + count));
}
