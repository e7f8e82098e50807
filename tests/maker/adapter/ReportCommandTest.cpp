// halvorn report: the last installation, told without names.
#include <sys/mount.h>
#include <sys/stat.h>

#include <memory>

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

// A journal of the test's own, in a /run that nobody else sees.
class JournaledReport : public ReportCommand {
 protected:
  void SetUp() override {
    if (!fs::exists(kJournal)) GTEST_SKIP() << "systemd, which has the journal, is not installed";
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator starts a journal";
    ReportCommand::SetUp();
    if (IsSkipped()) return;
    ASSERT_EQ(::mount("tmpfs", "/run", "tmpfs", 0, "mode=755"), 0);
    isMounted_ = true;
    fs::create_directories("/run/systemd/journal");
    journal_ = std::make_unique<ChildProcess>(std::vector<std::string>{kJournal});
    ASSERT_TRUE(eventually([] { return fs::exists("/run/systemd/journal/socket"); })) << journal_->output();
  }
  void TearDown() override {
    journal_.reset();
    if (isMounted_) {
      EXPECT_EQ(::umount2("/run", MNT_DETACH), 0);
    }
    ReportCommand::TearDown();
  }

 private:
  static constexpr char kJournal[] = "/lib/systemd/systemd-journald";
  std::unique_ptr<ChildProcess> journal_;
  bool isMounted_ = false;
};

TEST_F(JournaledReport, TheEventsOfTheJournalAreToldWithoutNames) {
  install();
  // Without --json a part follows the other, each behind its title.
  const auto journal = [&] {
    const std::string page = halvorn({"report"}).output;
    const std::size_t begin = page.find("== journal\n");
    return begin == std::string::npos ? "" : page.substr(begin, page.find("\n== ", begin) - begin);
  };
  EXPECT_TRUE(eventually([&] { return has(journal(), "successfully copied"); })) << journal();
  EXPECT_TRUE(has(journal(), "~/Applications/Sample.app")) << journal();
  EXPECT_FALSE(has(journal(), home())) << journal();
}

}  // namespace
}  // namespace halvorn
