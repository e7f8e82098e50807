// halvorn report: the last installation, told without names.
#include <sys/stat.h>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class ReportCommand : public HalvornFixture {
 protected:
  void install() {
    makeProduct();
    ASSERT_EQ(halvorn({"install", "-sourcePath", product(), "--yes", "--no-launch"}).status, 0);
  }
};

TEST_F(ReportCommand, TheLastInstallationIsToldWithoutNames) {
  install();
  ASSERT_EQ(
      halvorn({"install", "-sourcePath", product(), "-productName", "Second", "--yes", "--no-launch"}).status,
      0);
  environment_.emplace_back("XDG_CURRENT_DESKTOP=Test");
  const std::string report = answer({"report"}, "report");
  EXPECT_TRUE(has(report, "successfully copied")) << report;
  EXPECT_TRUE(has(report, "\"-productName\\\", \\\"Second\\\"")) << report;
  EXPECT_TRUE(has(report, "\"XDG_CURRENT_DESKTOP\": \"Test\"")) << report;
  EXPECT_TRUE(has(report, "\"path\": \"~/Applications/Sample.app\""))
      << "the plan, without names: " << report;
  EXPECT_TRUE(has(report, "\"product\": \"Second\"")) << "of the last installation: " << report;
  EXPECT_FALSE(has(report, home())) << report;
}

TEST_F(ReportCommand, ItIsShownBeforeItIsWrittenAndForNobodyElse) {
  install();
  const std::string file = folder_ / "report.txt";
  const CommandResult asked = halvorn({"report", "-o", file});
  EXPECT_EQ(asked.status, 10);
  EXPECT_TRUE(has(asked.output, "== log\n")) << asked.output;
  EXPECT_FALSE(fs::exists(file));
  const CommandResult written = halvorn({"report", "-o", file, "--yes"});
  EXPECT_EQ(written.status, 0);
  EXPECT_EQ(contentsOf(file), written.output);
  struct stat facts {};
  ASSERT_EQ(::stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0600U);
  EXPECT_EQ(halvorn({"report", "-o", folder_ / "none/report", "--yes"}).status, 73);
}

TEST_F(ReportCommand, WithoutAnInstallationThereIsNothingToTell) {
  EXPECT_EQ(halvorn({"report"}).status, 66);
}

}  // namespace
}  // namespace halvorn
