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
  // What bash would offer behind these words.
  [[nodiscard]] Names completed(const std::string& words) const {
    const std::string script =
        ". " KT_SOURCE_DIR "/tools/halvorn/halvorn.bash\nCOMP_WORDS=(halvorn " + words +
        ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_halvorn\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n";
    std::istringstream lines(runCommand({"bash", "-c", script}, {.environment = environment_}).output);
    Names offered;
    for (std::string line; std::getline(lines, line);) offered.insert(line);
    offered.erase("");
    return offered;
  }
};

TEST_F(HalvornWords, EveryCommandIsInTheManPageAndCompleted) {
  const Names known = verbs();
  EXPECT_GE(known.size(), 5U);
  const std::string manual = contentsOf(KT_SOURCE_DIR "/tools/halvorn/halvorn.1");
  Names offered = completed("''");
  offered.erase("--json");
  offered.erase("--help");
  EXPECT_EQ(offered, known);
  for (const std::string& verb : known) {
    EXPECT_TRUE(has(manual, "\n.BR " + verb + " \"") || has(manual, "\n.BI " + verb + " \"")) << verb;
    EXPECT_EQ(halvorn({verb, "--no-such-option"}).status, 64) << verb;
  }
}

TEST_F(HalvornWords, WhatIsCompletedIsUnderstood) {
  for (const std::string& verb : verbs()) {
    for (const std::string& option : completed(verb + " --")) {
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
  EXPECT_TRUE(completed("install -so").contains("-sourcePath"));
  EXPECT_TRUE(completed("chec").contains("check"));
}

TEST_F(HalvornWords, TheManPageHasNoMistakesOfForm) {
  if (!programExists("man")) GTEST_SKIP() << "man is not installed";
  const CommandResult page =
      runCommand({"man", "--warnings", "-l", "-Tutf8", KT_SOURCE_DIR "/tools/halvorn/halvorn.1"},
                 {.environment = {"PATH=/usr/bin:/bin", "LANG=C.UTF-8", "MANPAGER=cat"}});
  EXPECT_EQ(page.status, 0);
  EXPECT_FALSE(has(page.output, "warning")) << page.output;
}

}  // namespace
}  // namespace halvorn
