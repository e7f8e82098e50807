// What stands in the way of a copy is known before the old one is moved, or does no harm when it is not: few
// descriptors, small files, a layer of a file system that is only read.
#include <sys/resource.h>

#include <csignal>

#include "tests/files/adapter/MountedScene.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FailureText.h"
#include "tests/support/InChild.h"
#include "tests/support/SampleTrees.h"
#include "tests/support/TreeCompare.h"

namespace halvorn {
namespace {

class Limits : public MountedScene {
 protected:
  void SetUp() override {
    MountedScene::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    addFile("source/Nas.app/Contents/Info.plist", "version 2");
    addFile("apps/Nas.app/Contents/Info.plist", "version 1");
    addFolder("home");
    ASSERT_EQ(run({"chown", "-R", "65534:65534", at("apps"), at("home"), at("source")}), "");
    ASSERT_EQ(::chmod(at("").c_str(), 0755), 0);
  }
  // Deeper than there are descriptors, with files of several names.
  void addDeepFolders() const {
    SampleTrees::makeDeep(at("source/Nas.app/Resources"), 30, 2);
    ASSERT_EQ(run({"chown", "-R", "65534:65534", at("source")}), "");
  }
  // By somebody who may not raise the limits that the shell's commands set.
  CommandResult install(const std::string& limits) {
    const std::string start =
        limits + "; exec setpriv --reuid 65534 --regid 65534 --clear-groups env -i HOME=" + at("home") +
        " \"$@\"";
    return runCommand({"/bin/sh", "-c", start, "sh", KT_TRAIN, at("source/Nas.app"), at("apps/Nas.app")}, {},
                      50);
  }
  void expectNothingMoved(const CommandResult& result, const std::string& reason) {
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.output.find("CAUSE -- " + reason + ": "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("ERROR -- Could not copy myself to " + at("apps/Nas.app") + "\n"),
              std::string::npos)
        << result.output;
    EXPECT_EQ(contents("apps/Nas.app/Contents/Info.plist"), "version 1");
    EXPECT_FALSE(exists("home/.local/share/Trash/files/Nas.app"));
  }
  void expectInstalled(const CommandResult& result) {
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_TRUE(differencesBetween(at("source/Nas.app"), at("apps/Nas.app")).empty());
    EXPECT_EQ(contents("home/.local/share/Trash/files/Nas.app/Contents/Info.plist"), "version 1");
  }
};

TEST_F(Limits, WithTooFewDescriptorsForACopyTheOldOneStays) {
  for (const char* count : {"8", "12", "16"})
    expectNothingMoved(install(std::string("ulimit -n ") + count), "Too many open files");
}

TEST_F(Limits, WithFewDescriptorsTheCopyIsWhole) {
  addDeepFolders();
  expectInstalled(install("ulimit -n 24"));
}

TEST_F(Limits, FromTooFewDescriptorsToEnoughNothingIsEverHalfDone) {
  addDeepFolders();
  for (int count = 17; count <= 40; ++count) {
    SCOPED_TRACE(count);
    const CommandResult result = install("ulimit -n " + std::to_string(count));
    if (result.status != 0) {
      expectNothingMoved(result, "Too many open files");
      continue;
    }
    expectInstalled(result);
    std::filesystem::remove_all(at("apps/Nas.app"));
    std::filesystem::rename(at("home/.local/share/Trash/files/Nas.app"), at("apps/Nas.app"));
    std::filesystem::remove_all(at("home/.local"));
  }
}

TEST_F(Limits, AFileLargerThanMayBeWrittenIsKnownBefore) {
  addFile("source/Nas.app/large", std::string(300'000, 'x'));
  const CommandResult result = install("ulimit -f 200");  // of 512 bytes each
  expectNothingMoved(result, "File too large");
  EXPECT_NE(result.output.find(at("source/Nas.app/large")), std::string::npos) << result.output;
}

TEST_F(Limits, AFileThatTurnsOutTooLargeInMidCopyFailsTheCopyAlone) {
  addFile("large", std::string(3'000'000, 'x'));
  EXPECT_EQ(inChild([&] {
              const rlimit small{.rlim_cur = 100'000, .rlim_max = 100'000};
              if (::setrlimit(RLIMIT_FSIZE, &small) != 0) return 1;
              return textOf(files.copyItem(at("large"), at("copy"))) ==
                             "File too large: " + at("copy") + " (write)"
                         ? 0
                         : 2;
            }),
            0);
}

TEST_F(Limits, AnOldCopyThatIsPartOfALowerLayerStaysAndTheLogSaysWhy) {
  addFile("lower/apps/Nas.app/Contents/Info.plist", "version 1");
  for (const char* name : {"upper", "work", "lower/home"}) addFolder(name);
  const std::string failure = mountAt("merged", {"-t", "overlay", "-o",
                                                 "lowerdir=" + at("lower") + ",upperdir=" + at("upper") +
                                                     ",workdir=" + at("work") + ",redirect_dir=off",
                                                 "overlay"});
  if (!failure.empty()) GTEST_SKIP() << failure;
  const CommandResult result = runCommand(
      {"env", "-i", "HOME=" + at("merged/home"), KT_TRAIN, at("source/Nas.app"), at("merged/apps/Nas.app")},
      {}, 50);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.output.find(
                "CAUSE -- its file system cannot move it, for it lies in a layer that is only read: " +
                at("merged/apps/Nas.app") + " (move)\n"),
            std::string::npos)
      << result.output;
  EXPECT_EQ(contents("merged/apps/Nas.app/Contents/Info.plist"), "version 1");
}

}  // namespace
}  // namespace halvorn
