// What halvorn says of itself: usage, man page, completion.
#include <regex>
#include <set>
#include <sstream>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

using Names = std::set<std::string>;

class HalvornWords : public HalvornFixture {
 protected:
  [[nodiscard]] Names verbs() const {
    const std::regex line("(?:^|\n)  ([a-z]+) ");
    const std::string usage = halvorn({"--help"}).output;
    Names names;
    for (std::sregex_iterator match(usage.begin(), usage.end(), line), end; match != end; ++match)
      names.insert((*match)[1]);
    return names;
  }
  // What a shell would offer behind these words, the last of which is being written; '' for an empty one.
  [[nodiscard]] Names completed(const std::string& shell, const std::string& words) const {
    const std::string files = KT_SOURCE_DIR "/tools/halvorn/";
    std::string script = ". " + files + "halvorn.bash\nCOMP_WORDS=(halvorn " + words +
                         ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_halvorn\nprintf '%s\\n' "
                         "\"${COMPREPLY[@]}\"\n";
    if (shell == "fish")
      script = "source " + files + "halvorn.fish; complete -C 'halvorn " + (words == "''" ? "" : words) + "'";
    // What it tells the shell's own functions, which sort out what fits.
    if (shell == "zsh")
      script =
          "_arguments() { print -rl -- \"$@\" }; _describe() { print -rl -- ${(P)4} }\n"
          "offer() { source " +
          files + "_halvorn }; words=(halvorn " + words + "); CURRENT=$#words; offer";
    std::vector<std::string> command = {shell, "-c", script};
    if (shell == "zsh") command.insert(command.begin() + 1, "-f");
    const CommandResult result = runCommand(command, {.environment = environment_});
    EXPECT_EQ(result.status, 0) << result.output;
    std::istringstream lines(result.output);
    Names offered;
    for (std::string line; std::getline(lines, line);) offered.insert(nameIn(shell, line));
    offered.erase("");
    return offered;
  }
  // Without what a shell shows beside it.
  [[nodiscard]] static std::string nameIn(const std::string& shell, const std::string& line) {
    if (shell == "fish") return line.substr(0, line.find('\t'));
    if (shell != "zsh") return line;
    const std::size_t start = line.starts_with('(') ? line.find(')') + 1 : 0;
    return line.substr(start, line.find_first_of("[:", start) - start);
  }
  // Those of the shells that are here; bash is.
  [[nodiscard]] static std::vector<std::string> shells() {
    std::vector<std::string> all = {"bash"};
    for (const char* shell : {"fish", "zsh"}) {
      if (programExists(shell)) all.emplace_back(shell);
    }
    return all;
  }
};

TEST_F(HalvornWords, EveryCommandIsInTheManPageAndCompleted) {
  const Names known = verbs();
  EXPECT_GE(known.size(), 5U);
  const std::string manual = contentsOf(KT_SOURCE_DIR "/tools/halvorn/halvorn.1");
  for (const std::string& shell : shells()) {
    Names offered = completed(shell, "''");
    offered.erase("--json");
    offered.erase("--help");
    EXPECT_EQ(offered, known) << shell;
  }
  for (const std::string& verb : known) {
    EXPECT_TRUE(has(manual, "\n.BR " + verb + " \"") || has(manual, "\n.BI " + verb + " \"")) << verb;
    EXPECT_EQ(halvorn({verb, "--no-such-option"}).status, 64) << verb;
  }
}

TEST_F(HalvornWords, WhatIsCompletedIsUnderstood) {
  for (const std::string& verb : verbs()) {
    for (const std::string& option : completed("bash", verb + " --")) {
      const CommandResult result = halvorn({verb, option});
      EXPECT_FALSE(has(result.output, "is not understood") &&
                   !has(result.output, option + " is not understood"))
          << result.output;
      // One that takes a word is refused for want of it alone.
      if (result.status == 64) {
        EXPECT_FALSE(has(halvorn({verb, option, "word"}).output, option + " is not understood"))
            << verb << option;
      }
    }
  }
  EXPECT_TRUE(completed("bash", "install -so").contains("-sourcePath"));
  EXPECT_TRUE(completed("bash", "chec").contains("check"));
}

TEST_F(HalvornWords, EveryShellOffersTheSame) {
  if (shells().size() < 3) GTEST_SKIP() << "fish or zsh is not installed";
  for (const std::string& verb : verbs()) {
    const Names expected = completed("bash", verb + " -");
    EXPECT_FALSE(expected.empty()) << verb;
    for (const char* shell : {"fish", "zsh"}) {
      Names offered = completed(shell, verb + " -");
      for (const char* other : {"-o", "*"}) offered.erase(other);
      EXPECT_EQ(offered, expected) << shell << " " << verb;
    }
  }
}

TEST_F(HalvornWords, TheManPageHasNoMistakesOfForm) {
  if (!programExists("man")) GTEST_SKIP() << "man is not installed";
  const std::string file = KT_SOURCE_DIR "/tools/halvorn/halvorn.1";
  const CommandResult page =
      runCommand({"man", "--warnings", "-l", "-Tutf8", file},
                 {.environment = {"PATH=/usr/bin:/bin", "LANG=C.UTF-8", "MANPAGER=cat"}});
  EXPECT_EQ(page.status, 0);
  EXPECT_FALSE(has(page.output, "warning")) << page.output;
}

}  // namespace
}  // namespace halvorn
