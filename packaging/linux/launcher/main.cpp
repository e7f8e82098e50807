// "Install ..." at the top of a medium: finds its own folder, and in the hidden folder there the installer and what that is to
// be told; becomes the installer, with this program's arguments behind its own. What keeps it from that it says in a sentence.
// It is a program and not a script, which file managers open in an editor. Why: docs/decisions/036-one-file.md
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "packaging/linux/launcher/LauncherWords.h"
#include "packaging/linux/launcher/LibrariesInTheWay.h"
#include "packaging/linux/starter/Files.h"
#include "packaging/linux/starter/Tell.h"

namespace halvorn {
namespace {

constexpr int kNothingThere = 66;
constexpr int kCannotStart = 69;

// However it was named, and through whatever links. Without /proc the name is all there is.
std::string pathOfThisProgram(const char* name) {
  char path[PATH_MAX] = {};
  if (::readlink("/proc/self/exe", path, sizeof path - 1) > 0 || ::realpath(name, path) != nullptr)
    return path;
  return name;
}

std::string joined(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) all += (all.empty() ? "" : " ") + word;
  return all;
}

std::string complaintAbout(const LibrariesInTheWay& libraries, const std::string& bundle) {
  if (libraries.missing.empty()) return "this system's " + joined(libraries.older) + " is too old for it.";
  const auto packages = packagesOf(libraries.missing, bundle);
  return "this system has no " + joined(libraries.missing) + "." +
         (packages.empty() ? "" : " An administrator adds it with: apt install " + joined(packages));
}

int refuse(const std::string& title, const std::string& sentence, int status) {
  tell(title, sentence);
  return status;
}

int become(const std::string& program, std::vector<std::string> words) {
  words.insert(words.begin(), program);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::execv(program.c_str(), pointers.data());
  return errno;
}

int start(const std::string& folder, const LauncherWords& words, const std::vector<std::string>& arguments) {
  const std::string bundle = folder + "/" + words.installer;
  const std::string program = bundle + "/Contents/Linux/HalvornInstaller";
  struct stat facts {};
  if (::stat(program.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode))
    return refuse(words.title, "The installer is missing: " + program, kNothingThere);
  if (::access(program.c_str(), X_OK) != 0)
    return refuse(words.title,
                  "Nothing can be started from here: copy the folder to your disk, or mount the medium "
                  "without noexec.",
                  kCannotStart);
  if (const auto libraries = librariesInTheWay(bundle, program); !libraries.areNone())
    return refuse(words.title, "The installer cannot start: " + complaintAbout(libraries, bundle),
                  kCannotStart);
  // A lone question is the installer's, not the product's.
  std::vector<std::string> all;
  const bool isQuestion = arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "--version");
  for (std::size_t index = 0; !isQuestion && index < words.options.size(); ++index)
    all.push_back(index % 2 == 0 ? words.options[index] : folder + "/" + words.options[index]);
  all.insert(all.end(), arguments.begin(), arguments.end());
  const int error = become(program, all);
  return refuse(words.title, std::string("The installer cannot start: ") + std::strerror(error),
                kCannotStart);
}

int run(const std::vector<std::string>& arguments) {
  const std::string path = pathOfThisProgram(arguments[0].c_str());
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
  const auto words = launcherWordsIn(contentsOf(folder + "/" + kLauncherWordsPath));
  if (!words)
    return refuse(
        path.substr(slash + 1),
        "Nothing can be installed from here: the hidden folder .halvorn of the medium is not beside "
        "this file.",
        kNothingThere);
  return start(folder, *words, {arguments.begin() + 1, arguments.end()});
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) { return halvorn::run({arguments, arguments + count}); }
