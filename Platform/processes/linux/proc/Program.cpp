#include "Platform/processes/linux/proc/Program.h"

#include <algorithm>

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/Signatures.h"

namespace halvorn {
namespace {

constexpr std::string_view kInBundle = ".app/";
constexpr std::string_view kDeleted = " (deleted)";
// An interpreter, at most one argument that the kernel takes apart no further (env does), then the script.
constexpr std::size_t kLastScriptPosition = 8;
constexpr std::size_t kInterpreterLineLimit = 256;
constexpr std::size_t kKernelNameLength = 15;

std::string lastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  for (std::size_t start = text.find_first_not_of(" \t"); start != std::string_view::npos;) {
    const std::size_t end = std::min(text.find_first_of(" \t", start), text.size());
    words.emplace_back(text.substr(start, end - start));
    start = text.find_first_not_of(" \t", end);
  }
  return words;
}

std::string startOfFile(const std::string& path) {
  const auto item = findItem(path);
  return item ? readStart(*item, kInterpreterLineLimit).value_or("") : std::string();
}

Text nameOfBundle(const Text& bundlePath, const PropertyDictionary& information) {
  for (const char* key : {"CFBundleName", "CFBundleExecutable"}) {
    const OptionalText name = textForKey(information, key);
    if (name && !name->isEmpty()) return *name;
  }
  return Paths::deletingExtension(Paths::lastComponent(bundlePath));
}

Program programOfBundle(const Text& bundlePath, const PropertyDictionary& information) {
  const OptionalText identifier = textForKey(information, "CFBundleIdentifier");
  const Text identity = identifier && !identifier->isEmpty() ? *identifier : bundlePath;
  return {nameOfBundle(bundlePath, information), signatureFrom(information, identity), bundlePath, true,
          std::make_shared<const PropertyDictionary>(information)};
}

// Scripts are named by a whole path or by one that starts at the working folder.
bool mayNameScript(std::string_view commandLine) {
  return commandLine.find(".app/") != std::string_view::npos ||
         commandLine.find("./") != std::string_view::npos;
}

}  // namespace

std::optional<Interpreter> parseInterpreter(std::string_view scriptStart) {
  if (!scriptStart.starts_with("#!")) return std::nullopt;
  const std::string_view line = scriptStart.substr(2, scriptStart.find('\n') - 2);
  std::vector<std::string> words = wordsOf(line);
  if (words.empty()) return std::nullopt;
  Interpreter interpreter{words[0], {}, false};
  words.erase(words.begin());
  if (lastComponent(interpreter.program) != "env") {
    // The kernel passes everything behind the interpreter as one argument.
    std::string rest = words.empty() ? std::string() : words[0];
    for (std::size_t i = 1; i < words.size(); ++i) rest += " " + words[i];
    if (!rest.empty()) interpreter.arguments.push_back(rest);
    return interpreter;
  }
  if (!words.empty() && words[0] == "-S") words.erase(words.begin());
  if (words.empty()) return std::nullopt;
  return Interpreter{words[0], std::vector<std::string>(words.begin() + 1, words.end()), true};
}

ProgramFinder::ProgramFinder(const ProcFiles& files, const Bundles& bundles)
    : files_(files), bundles_(bundles) {}

bool ProgramFinder::mayBeInBundle(pid_t pid) const {
  const auto link = files_.executableLink(pid);
  return link && (link->find(kInBundle) != std::string::npos || mayNameScript(files_.commandLine(pid)));
}

std::optional<Program> ProgramFinder::programInBundle(pid_t pid, Walk& walk) const {
  const auto link = files_.executableLink(pid);
  if (!link) return std::nullopt;
  if (auto program = programOfExecutable(pid, *link, walk)) return program;
  return programOfScript(pid, *link);
}

std::optional<Program> ProgramFinder::programAround(const Text& path) const {
  const OptionalText bundlePath = bundleAround(path);
  const auto information = bundlePath ? bundles_.infoDictionary(*bundlePath) : std::nullopt;
  return information ? std::optional(programOfBundle(*bundlePath, *information)) : std::nullopt;
}

std::optional<Program> ProgramFinder::programOfExecutable(pid_t pid, const std::string& link,
                                                          Walk& walk) const {
  if (link.find(kInBundle) == std::string::npos) return std::nullopt;
  // A path means something here only if it leads us to the very file that the process runs: the
  // process may live in a container of its own. The path of a file that is gone means something
  // when both see the same file systems.
  const auto running = files_.executable(pid);
  auto known = walk.paths_.find(link);
  if (known == walk.paths_.end() || known->second.file != running) {
    const auto file = identityOfFile(link);
    known = walk.paths_.insert_or_assign(link, Walk::Known{file, file ? programAround(link) : std::nullopt})
                .first;
  }
  if (running && known->second.file == running) return known->second.program;
  if (!link.ends_with(kDeleted) || !files_.sharesMounts(pid)) return std::nullopt;
  return programAround(link.substr(0, link.size() - kDeleted.size()));
}

std::optional<Program> ProgramFinder::programOfScript(pid_t pid, const std::string& link) const {
  const std::string commandLine = files_.commandLine(pid);
  if (!mayNameScript(commandLine)) return std::nullopt;
  const std::vector<std::string> arguments = splitAtZero(commandLine);
  for (std::size_t i = 1; i < std::min(arguments.size(), kLastScriptPosition); ++i) {
    if (arguments[i].find(kInBundle) == std::string::npos && !arguments[i].starts_with("./")) continue;
    Text path = arguments[i];
    if (!Paths::isAbsolute(path)) {
      const auto folder = files_.workingFolder(pid);
      if (!folder) return std::nullopt;
      path = Paths::appending(*folder, path.hasPrefix("./") ? path.substring(2) : path);
    }
    const OptionalText bundlePath = bundleAround(path);
    if (!bundlePath || bundles_.executablePath(*bundlePath) != path) continue;
    if (runsScript(pid, link, arguments, i, path)) return programAround(path);
  }
  return std::nullopt;
}

// An editor that shows the script names it among its arguments too; only the interpreter that the script
// itself asks for, called as the script asks, runs it.
bool ProgramFinder::runsScript(pid_t pid, const std::string& link, const std::vector<std::string>& arguments,
                               std::size_t scriptPosition, const Text& scriptPath) const {
  const auto interpreter = parseInterpreter(startOfFile(scriptPath.bytes()));
  if (!interpreter || interpreter->arguments.size() + 1 != scriptPosition) return false;
  if (!std::equal(interpreter->arguments.begin(), interpreter->arguments.end(), arguments.begin() + 1))
    return false;
  if (!files_.sharesMounts(pid)) return false;
  // "python3" may turn out to be "python3.11".
  if (interpreter->isSearched) return lastComponent(link).starts_with(interpreter->program);
  return files_.runsFile(pid, interpreter->program);
}

Program ProgramFinder::anyProgram(pid_t pid, Walk& walk) const {
  if (auto program = programInBundle(pid, walk)) return *program;
  Program program;
  auto link = files_.executableLink(pid);
  if (link && link->ends_with(kDeleted) && !files_.runsFile(pid, *link)) {
    link->resize(link->size() - kDeleted.size());
  }
  if (link) program.path = Text(*link);
  const auto stat = files_.stat(pid);
  const std::string kernelName = stat ? stat->name : std::string();
  const std::string fileName = link ? lastComponent(*link) : std::string();
  // The kernel keeps the start of the file's name, unless the program gave itself another one.
  const bool isOwnName = fileName.substr(0, kKernelNameLength) != kernelName && !kernelName.empty();
  program.name = Text(isOwnName ? kernelName : fileName);
  program.signature = derivedSignature(program.path.value_or(program.name));
  return program;
}

}  // namespace halvorn
