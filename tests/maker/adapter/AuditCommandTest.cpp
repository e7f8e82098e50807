// halvorn audit: a copy beside what it was made from.
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class AuditCommand : public HalvornFixture {
 protected:
  void SetUp() override {
    HalvornFixture::SetUp();
    if (IsSkipped()) return;
    makeProduct();
    fs::create_symlink("version.txt", product() + "/Contents/Resources/link");
    fs::create_hard_link(product() + "/Contents/Resources/version.txt",
                         product() + "/Contents/Resources/again");
    const CommandResult result = halvorn({"install", "-sourcePath", product(), "--yes", "--no-launch"});
    ASSERT_EQ(result.status, 0) << result.output;
  }
  [[nodiscard]] std::string audited(int status) const {
    return answer({"audit", product(), destination()}, "audit", status);
  }
  [[nodiscard]] std::string inside(const std::string& path) const { return destination() + "/" + path; }
};

TEST_F(AuditCommand, WhatTheInstallerMadeHasNoFault) {
  const std::string audit = audited(0);
  EXPECT_TRUE(has(audit, "\"faults\": 0")) << audit;
  EXPECT_TRUE(has(audit, "\"road\": \"ordinary\"")) << audit;
  EXPECT_TRUE(has(audit, "\"differences\": []")) << audit;
  const CommandResult lines = halvorn({"audit", product() + "/", destination()});
  EXPECT_TRUE(has(lines.output, " 0 faults, installed with ordinary rights\n")) << lines.output;
}

TEST_F(AuditCommand, EachKindOfFaultIsFound) {
  const struct {
    const char* kind;
    std::function<void()> damage;
  } faults[] = {
      {"time", [&] { fs::last_write_time(inside("Contents/Info.plist"), fs::file_time_type::clock::now()); }},
      {"mode", [&] { fs::permissions(inside("Contents/Info.plist"), fs::perms::owner_all); }},
      {"extra", [&] { putFile(inside("new"), ""); }},
      {"missing", [&] { fs::remove(inside("Contents/Info.plist")); }},
      {"size", [&] { putFile(inside("Contents/Resources/version.txt"), "longer than before"); }},
      {"bytes", [&] { putFile(inside("Contents/Resources/version.txt"), "2.1\n"); }},
      {"link",
       [&] {
         fs::remove(inside("Contents/Resources/link"));
         fs::create_symlink("elsewhere", inside("Contents/Resources/link"));
       }},
      {"kind",
       [&] {
         fs::remove(inside("Contents/Resources/link"));
         fs::create_directory(inside("Contents/Resources/link"));
       }},
      {"names",
       [&] {
         fs::remove(inside("Contents/Resources/again"));
         fs::copy_file(inside("Contents/Resources/version.txt"), inside("Contents/Resources/again"));
       }},
      {"owner", [&] { EXPECT_EQ(::chown(inside("Contents/Info.plist").c_str(), 65534, 65534), 0); }},
  };
  for (const auto& [kind, damage] : faults) {
    if (kind == std::string("owner") && ::geteuid() != 0) continue;  // nobody else gives a file away
    fs::remove_all(destination());
    ASSERT_EQ(halvorn({"install", "-sourcePath", product(), "--yes", "--no-launch"}).status, 0);
    damage();
    const std::string audit = audited(1);
    EXPECT_TRUE(has(audit, "\"asItMust\": false, \"detail\": ") &&
                has(audit, "\"kind\": \"" + std::string(kind) + "\""))
        << kind << ": " << audit;
  }
}

TEST_F(AuditCommand, AnAttributeThatIsNewOrLostIsAFault) {
  const auto give = [](const std::string& file) {
    return ::setxattr(file.c_str(), "user.halvorn", "x", 1, 0) == 0;
  };
  if (!give(inside("Contents/Info.plist"))) GTEST_SKIP() << "no attributes on this file system";
  EXPECT_TRUE(has(audited(1), "\"detail\": \"user.halvorn is new\", \"kind\": \"attribute\""));
  ASSERT_TRUE(give(product() + "/Contents/Info.plist"));
  EXPECT_TRUE(has(audited(0), "\"faults\": 0"));
  ASSERT_EQ(::removexattr(inside("Contents/Info.plist").c_str(), "user.halvorn"), 0);
  EXPECT_TRUE(has(audited(1), "\"detail\": \"user.halvorn\", \"kind\": \"attribute\""));
}

TEST_F(AuditCommand, WithoutBothFoldersItSaysSo) {
  EXPECT_EQ(halvorn({"audit", product()}).status, 64);
  EXPECT_EQ(halvorn({"audit", product(), home() + "/none"}).status, 66);
}

// What the administrator's tool makes of modes and owners is as it must be; the same without the tool is none.
TEST_F(AuditCommand, TheAdministratorsRoadHasItsOwnRules) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs the rights of the administrator";
  fs::remove_all(destination());
  for (const auto& entry : fs::recursive_directory_iterator(product()))
    ASSERT_EQ(::lchown(entry.path().c_str(), 65534, 65534), 0);
  ASSERT_EQ(::lchown(product().c_str(), 65534, 65534), 0);
  ASSERT_EQ(::chmod((product() + "/Contents/Info.plist").c_str(), 0666), 0);
  ASSERT_EQ(::chmod((product() + "/Contents/Linux/Sample").c_str(), 04755), 0);
  const CommandResult tool = runCommand({KT_BUNDLE_DIR "/Contents/Resources/train", product(), destination()},
                                        {.environment = environment_});
  ASSERT_EQ(tool.status, 0) << tool.output;
  const std::string audit = audited(0);
  EXPECT_TRUE(has(audit, "\"road\": \"administrator\"")) << audit;
  EXPECT_TRUE(has(audit, "\"detail\": \"65534:65534 became 0:0\", \"kind\": \"owner\"")) << audit;
  EXPECT_TRUE(has(audit, "\"detail\": \"0666 became 0644\"")) << audit;
  EXPECT_TRUE(has(audit, "\"detail\": \"4755 became 0755\"")) << audit;
  ASSERT_EQ(::chmod(inside("Contents/Info.plist").c_str(), 0666), 0);
  EXPECT_TRUE(has(audited(1), "\"asItMust\": false, \"detail\": \"0666 became 0666\""));
}

}  // namespace
}  // namespace halvorn
