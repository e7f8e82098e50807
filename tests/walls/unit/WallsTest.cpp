// The walls of the house: who may include whom, and what the privileged tool links.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

struct Include {
  std::string file;  // relative to the root of the tree
  std::string target;
  bool isSystem;
};

bool isSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp" || path.extension() == ".mm";
}

std::vector<std::string> sourcesIn(const std::string& folder) {
  std::vector<std::string> result;
  const fs::path root = KT_SOURCE_DIR;
  for (auto entry = fs::recursive_directory_iterator(root / folder);
       entry != fs::recursive_directory_iterator(); ++entry) {
    if (entry->is_regular_file() && isSource(entry->path())) {
      result.push_back(fs::relative(entry->path(), root).string());
    }
  }
  return result;
}

std::vector<Include> includesOf(const std::string& file) {
  static const std::regex line(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
  std::vector<Include> result;
  std::ifstream stream(fs::path(KT_SOURCE_DIR) / file);
  for (std::string text; std::getline(stream, text);) {
    std::smatch match;
    if (std::regex_search(text, match, line)) result.push_back({file, match[2], match[1] == "<"});
  }
  return result;
}

// Of a file named from the root of the tree.
std::string textOf(const std::string& file) { return contentsOf(fs::path(KT_SOURCE_DIR) / file); }

// The headers of the C++20 library that the core may use: no C headers, nothing of an operating system.
const std::set<std::string>& standardHeaders() {
  static const std::set<std::string> headers = {
      "algorithm",       "any",         "array",        "atomic",        "bit",
      "cassert",         "cctype",      "charconv",     "chrono",        "climits",
      "clocale",         "cmath",       "compare",      "concepts",      "condition_variable",
      "cstddef",         "cstdint",     "cstdio",       "cstdlib",       "cstring",
      "deque",           "exception",   "functional",   "future",        "initializer_list",
      "iterator",        "limits",      "list",         "map",           "memory",
      "mutex",           "numbers",     "numeric",      "optional",      "queue",
      "random",          "ranges",      "ratio",        "set",           "shared_mutex",
      "source_location", "span",        "sstream",      "stack",         "stdexcept",
      "string",          "string_view", "system_error", "thread",        "tuple",
      "type_traits",     "typeindex",   "typeinfo",     "unordered_map", "unordered_set",
      "utility",         "variant",     "vector"};
  return headers;
}

// The class library's root is a folder of its own: System.
bool isCompositionRoot(const std::string& file) {
  static const std::regex root("Sources/main.*");
  return std::regex_match(file, root);
}

// "files" of Platform/files/linux/XdgTrash.h; "" for a file that is not in Platform.
std::string subjectOf(const std::string& file) {
  static const std::regex place("^Platform/([a-z]+)/.*$");
  std::smatch match;
  return std::regex_match(file, match, place) ? match[1].str() : "";
}

// "linux" of Platform/files/linux/XdgTrash.h; "" for the interface beside that folder.
std::string folderBelowSubject(const std::string& file) {
  static const std::regex place("^Platform/[a-z]+/([a-z]+)/.*$");
  std::smatch match;
  return std::regex_match(file, match, place) ? match[1].str() : "";
}

// The files of the core, the composition root apart.
std::vector<std::string> coreFiles() {
  std::vector<std::string> result;
  for (const char* folder : {"Core", "KTStuff", "Sources"}) {
    for (const std::string& file : sourcesIn(folder)) {
      if (!isCompositionRoot(file)) result.push_back(file);
    }
  }
  for (const std::string& file : sourcesIn("Platform")) {
    if (folderBelowSubject(file).empty() || folderBelowSubject(file) == "null") result.push_back(file);
  }
  for (const char* file : {"train/InstallFunction.h", "train/InstallFunction.cpp"}) result.push_back(file);
  return result;
}

bool startsWithAny(const std::string& text, const std::vector<std::string>& prefixes) {
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [&](const std::string& prefix) { return text.rfind(prefix, 0) == 0; });
}

TEST(Walls, TheCoreIncludesTheStandardLibraryAndThisHouseAlone) {
  const auto files = coreFiles();
  ASSERT_GT(files.size(), 60u);
  for (const std::string& file : files) {
    for (const Include& include : includesOf(file)) {
      if (include.isSystem) {
        EXPECT_TRUE(standardHeaders().contains(include.target))
            << file << " includes <" << include.target << ">";
      } else {
        EXPECT_TRUE(startsWithAny(include.target, {"Core/", "Platform/", "KTStuff/", "Sources/", "train/"}))
            << file << " includes \"" << include.target << "\"";
      }
    }
  }
}

TEST(Walls, IncludesRunOneWay) {
  const struct {
    const char* folder;
    std::vector<std::string> mayInclude;
  } rules[] = {
      {"Core", {"Core/"}},
      {"KTStuff", {"Core/", "Platform/", "KTStuff/"}},
      {"System", {"Core/", "Platform/", "KTStuff/", "System/"}},
      {"Sources", {"Core/", "Platform/", "KTStuff/", "System/", "Sources/", "train/InstallFunction.h"}},
      {"train", {"Core/", "Platform/", "train/"}},
      {"tools",
       {"Core/", "Platform/", "KTStuff/", "System/", "Sources/", "train/InstallFunction.h",
        "packaging/linux/launcher/LauncherWords.h", "packaging/linux/starter/PayloadTrailer.h", "tools/"}},
      {"packaging", {"packaging/"}},
      {"Platform", {"Core/", "Platform/"}}};
  for (const auto& [folder, mayInclude] : rules) {
    for (const std::string& file : sourcesIn(folder)) {
      for (const Include& include : includesOf(file)) {
        if (include.isSystem) continue;
        EXPECT_TRUE(startsWithAny(include.target, mayInclude))
            << file << " includes \"" << include.target << "\"";
      }
    }
  }
}

TEST(Walls, AdaptersAreNamedByTheCompositionRootAlone) {
  for (const char* folder : {"Core", "KTStuff", "Sources"}) {
    for (const std::string& file : sourcesIn(folder)) {
      if (isCompositionRoot(file)) continue;
      for (const Include& include : includesOf(file)) {
        EXPECT_EQ(folderBelowSubject(include.target), "") << file << " includes " << include.target;
      }
    }
  }
}

TEST(Walls, ASystemsFolderIncludesInterfacesAndWhatItMayStandOn) {
  const std::map<std::string, std::set<std::string>> mayInclude = {{"", {""}},
                                                                   {"null", {"", "null"}},
                                                                   {"posix", {"", "posix"}},
                                                                   {"linux", {"", "posix", "linux"}},
                                                                   {"mac", {"", "posix", "mac"}}};
  std::size_t count = 0;
  for (const std::string& file : sourcesIn("Platform")) {
    const auto allowed = mayInclude.find(folderBelowSubject(file));
    ASSERT_NE(allowed, mayInclude.end()) << file << " lies in no system's folder";
    for (const Include& include : includesOf(file)) {
      if (include.target.rfind("Platform/", 0) != 0) continue;
      ++count;
      EXPECT_TRUE(allowed->second.contains(folderBelowSubject(include.target)))
          << file << " includes " << include.target;
    }
  }
  EXPECT_GT(count, 300U);
}

// What only Objective-C can read stands in its sources, and in headers that say so.
TEST(Walls, NoTypeOfObjectiveCLeavesItsSources) {
  const std::regex objectiveC(
      R"((^|\n)\s*(#\s*import|@(class|interface|protocol))\b|\bNS[A-Z]\w*\s*\*|\bid\b\s+\w)");
  const std::string mark = "For sources in Objective-C++ alone.";
  std::size_t count = 0;
  for (const std::string& file : sourcesIn("Platform")) {
    if (!file.ends_with(".h") || folderBelowSubject(file) != "mac") continue;
    ++count;
    const std::string text = textOf(file);
    if (text.find(mark) != std::string::npos) continue;
    EXPECT_FALSE(std::regex_search(text, objectiveC)) << file;
    for (const Include& include : includesOf(file))
      EXPECT_EQ(textOf(include.isSystem ? file : include.target).find(mark), std::string::npos) << file;
  }
  EXPECT_GT(count, 5U);
}

// From the ground up. What lies on one floor does not know what else lies there.
TEST(Walls, NoSubjectIncludesOneThatStandsAboveIt) {
  const std::map<std::string, int> floors = {{"running", 1},   {"text", 2},    {"color", 2}, {"rights", 2},
                                             {"files", 3},     {"session", 4}, {"sound", 4}, {"bundles", 5},
                                             {"processes", 6}, {"window", 6}};
  std::set<std::string> seen;
  for (const std::string& file : sourcesIn("Platform")) {
    const std::string subject = subjectOf(file);
    ASSERT_TRUE(floors.contains(subject)) << file << " belongs to no subject";
    seen.insert(subject);
    for (const Include& include : includesOf(file)) {
      const std::string other = subjectOf(include.target);
      if (other.empty() || other == subject) continue;
      ASSERT_TRUE(floors.contains(other)) << file << " includes " << include.target;
      EXPECT_LT(floors.at(other), floors.at(subject)) << file << " includes " << include.target;
    }
  }
  EXPECT_EQ(seen.size(), floors.size());
}

// The headers of the interfaces, beside the systems' folders.
std::vector<std::string> interfaceHeaders() {
  std::vector<std::string> result = sourcesIn("Platform");
  std::erase_if(result, [](const std::string& file) { return !folderBelowSubject(file).empty(); });
  return result;
}

std::set<std::string> firstGroups(const std::string& text, const std::regex& pattern) {
  std::set<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
    found.insert((*match)[1]);
  return found;
}

// What is only ever handed out or handed in: a null hands out none, and who asks brings his own.
const std::set<std::string>& neededByNoNull() {
  static const std::set<std::string> classes = {"AccessibilityObserver",
                                                "AnimationContext",
                                                "AppleEvent",
                                                "Authorization",
                                                "BoundsAnimator",
                                                "ClipView",
                                                "CompiledRegex",
                                                "FileHandle",
                                                "Image",
                                                "EventAddress",
                                                "RunningApplication",
                                                "ScrollView",
                                                "Sound",
                                                "Task",
                                                "Appearance",
                                                "HtmlVisitor",
                                                "RegexVisitor"};
  return classes;
}

TEST(Walls, EveryInterfaceHasItsNull) {
  const std::regex interface(R"(\n\s*virtual ~(\w+)\(\))");
  const std::regex view(R"(\nclass (\w+) : public virtual View )");
  const std::regex base(R"(public (?:virtual )?(\w+))");
  std::set<std::string> nulls;
  for (const std::string& file : sourcesIn("Platform")) {
    if (folderBelowSubject(file) == "null") nulls.merge(firstGroups(textOf(file), base));
  }
  std::size_t count = 0;
  for (const std::string& file : interfaceHeaders()) {
    std::set<std::string> interfaces = firstGroups(textOf(file), interface);
    interfaces.merge(firstGroups(textOf(file), view));
    for (const std::string& name : interfaces) {
      ++count;
      EXPECT_NE(nulls.contains(name), neededByNoNull().contains(name)) << name << " of " << file;
    }
  }
  EXPECT_GT(count, 50U);
}

TEST(Walls, TheContractListsEveryInterface) {
  const std::string contract = textOf("Platform/README.md");
  const auto headers = interfaceHeaders();
  EXPECT_GT(headers.size(), 35U);
  for (const std::string& file : headers) {
    const std::string name = fs::path(file).stem().string();
    EXPECT_NE(contract.find("`" + name + "`"), std::string::npos) << file << " is not in Platform/README.md";
  }
}

TEST(Walls, NoSystemIsAskedForInTheCore) {
  const std::regex condition(R"(^\s*#\s*(if|ifdef|ifndef|elif)\b)");
  for (const std::string& file : coreFiles()) {
    std::ifstream stream(fs::path(KT_SOURCE_DIR) / file);
    for (std::string text; std::getline(stream, text);) {
      EXPECT_FALSE(std::regex_search(text, condition)) << file << ": " << text;
    }
  }
}

#ifdef KT_HEADERS_ALONE
// The build compiles a header alone as the first include of the source beside it, else by a source of its own.
TEST(Walls, EveryHeaderCompilesAlone) {
  std::ifstream compiled(KT_HEADERS_ALONE);
  const std::string objects{std::istreambuf_iterator<char>(compiled), {}};
  const std::string systems = " " KT_SYSTEM_FOLDERS " ";
  std::size_t beside = 0;
  std::size_t alone = 0;
  for (const char* folder : {"Core", "KTStuff", "Platform", "Sources", "System", "tools", "train"}) {
    for (const std::string& file : sourcesIn(folder)) {
      const std::string system = folderBelowSubject(file);
      if (!file.ends_with(".h") || (!system.empty() && systems.find(" " + system + " ") == std::string::npos))
        continue;
      const std::string source = file.substr(0, file.size() - 1) + "cpp";
      if (!fs::exists(fs::path(KT_SOURCE_DIR) / source)) {
        EXPECT_NE(objects.find("/" + file + ".cpp"), std::string::npos) << file << " is not compiled";
        ++alone;
        continue;
      }
      const auto includes = includesOf(source);
      EXPECT_TRUE(!includes.empty() && includes.front().target == file)
          << source << " does not include " << file << " first";
      ++beside;
    }
  }
  EXPECT_GT(beside, 100U);
  EXPECT_GT(alone, 60U);
}
#endif

// What the program is linked with, by the files' names.
std::vector<std::string> librariesOf(const std::string& program) {
  const CommandResult dump = runCommand({"objdump", "-p", program});
  EXPECT_EQ(dump.status, 0) << dump.output;
  const std::regex needed(R"(NEEDED\s+(\S+))");
  std::vector<std::string> libraries;
  for (std::sregex_iterator match(dump.output.begin(), dump.output.end(), needed), end; match != end; ++match)
    libraries.push_back((*match)[1]);
  return libraries;
}

TEST(Walls, TheInstallerLoadsNoLibraryOfSoundOrDigestsWhenItStarts) {
  const auto libraries = librariesOf(KT_INSTALLER_BUNDLE "/Contents/Linux/HalvornInstaller");
  EXPECT_GE(libraries.size(), 5U);
  for (const std::string& library : libraries) {
    EXPECT_FALSE(startsWithAny(library, {"libpulse", "libsndfile", "libcrypto", "libssl"})) << library;
  }
}

// What the person waits for before the window comes. A name more is a library more to be found, mapped and initialised.
TEST(Walls, TheInstallerLoadsWhatItAlwaysLoadedWhenItStarts) {
  const std::set<std::string> known = {
      "libQt6Core",      "libQt6DBus",       "libQt6Gui", "libQt6Widgets",     "libdbus-1", "libexpat",
      "libicui18n",      "libicuuc",         "libpng16",  "libwayland-client", "libxcb",    "libxcb-ewmh",
      "libxcb-icccm",    "libxcb-res",       "libc",      "libgcc_s",          "libm",      "libstdc++",
      "ld-linux-x86-64", "ld-linux-aarch64", "libasan",   "libubsan",          "libtsan"};
  for (const std::string& library : librariesOf(KT_INSTALLER_BUNDLE "/Contents/Linux/HalvornInstaller")) {
    EXPECT_TRUE(known.contains(library.substr(0, library.find(".so")))) << library;
  }
}

TEST(Walls, TheToolLinksTheCAndCppLibrariesAlone) {
  const std::regex allowed(
      R"(^(libc|libm|libgcc_s|libstdc\+\+|ld-linux.*|libasan|libubsan|libtsan)\.so\..*)");
  const auto libraries = librariesOf(KT_TRAIN_PROGRAM);
  EXPECT_GE(libraries.size(), 2U);
  for (const std::string& library : libraries) EXPECT_TRUE(std::regex_match(library, allowed)) << library;
}

}  // namespace
}  // namespace halvorn
