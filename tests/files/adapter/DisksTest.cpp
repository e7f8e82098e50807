// What real disks do while the tool installs: they fill up, turn read-only, lie, and are pulled out.
#include <sys/mount.h>

#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "tests/files/adapter/MountedScene.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SampleTrees.h"
#include "tests/support/TreeCompare.h"

namespace halvorn {
namespace {

class Disks : public MountedScene {
 protected:
  // Makes an old copy on the disk, and a new one beside it that is more than the disk holds.
  void addProducts(std::uint64_t newBytes) {
    addFile("disk/apps/Nas.app/Contents/Info.plist", "version 1");
    addFile("disk/apps/bystander", "untouched");
    addFolder("home");
    SampleTrees::makeMixed(at("source"), newBytes);
  }
  std::vector<std::string> command(const std::string& source) const {
    return {"env", "-i", "HOME=" + at("home"), KT_TRAIN, source, at("disk/apps/Nas.app")};
  }
  // What the tool said, without how far the copy was.
  CommandResult install() {
    CommandResult result = runCommand(command(at("source")), {}, 50);
    std::istringstream lines(std::exchange(result.output, {}));
    for (std::string line; std::getline(lines, line);)
      if (!line.starts_with("copied ")) result.output += line + "\n";
    return result;
  }
  // Takes all the room of the disk but that much, without writing.
  void fillAllBut(off_t bytes) {
    const FileDescriptor file(::open(at("disk/filling").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const auto free = static_cast<off_t>(std::filesystem::space(at("disk")).available);
    if (free > bytes) {
      ASSERT_EQ(::fallocate(file.get(), 0, 0, free - bytes), 0);
    }
  }
  // The disk's own Trash, since the home folder is elsewhere.
  std::string trashed() { return contents("disk/.Trash-0/files/Nas.app/Contents/Info.plist"); }
  std::string copyLine() const {
    return "ERROR -- Could not copy myself to " + at("disk/apps/Nas.app") + "\n";
  }
  // Whether the line of the cause gives that reason for something there.
  bool names(const std::string& output, const std::string& reason, const std::string& place) const {
    return output.find("CAUSE -- " + reason + ": " + at(place)) != std::string::npos;
  }
  static bool endsWith(const std::string& text, const std::string& end) { return text.ends_with(end); }
  static long lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }
};

class FullDisk : public Disks, public testing::WithParamInterface<const char*> {};

TEST_P(FullDisk, AFullDiskGivesTwoKeepsTheOldCopyInTheTrashAndTouchesNothingElse) {
  const std::string failure = mountNew(GetParam(), "disk", std::string(GetParam()) == "xfs" ? 320 : 120);
  if (!failure.empty()) GTEST_SKIP() << failure;
  addProducts(30'000'000);
  fillAllBut(8'000'000);
  const CommandResult result = install();
  EXPECT_EQ(result.status, 2) << result.output;
  EXPECT_TRUE(endsWith(result.output, copyLine())) << result.output;
  EXPECT_TRUE(names(result.output, "No space left on device", "disk/apps/Nas.app/")) << result.output;
  EXPECT_EQ(lines(result.output), 2);
  EXPECT_EQ(trashed(), "version 1");
  EXPECT_EQ(contents("disk/apps/bystander"), "untouched");
}

INSTANTIATE_TEST_SUITE_P(On, FullDisk, testing::Values("ext4", "btrfs", "xfs", "tmpfs"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(Disks, ADiskThatIsReadOnlyGivesOneAndLeavesTheOldCopyInPlace) {
  const std::string failure = mountNew("ext4", "disk", 32);
  if (!failure.empty()) GTEST_SKIP() << failure;
  addProducts(1'000'000);
  ASSERT_EQ(::mount(nullptr, at("disk").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  const CommandResult result = install();
  EXPECT_EQ(result.status, 1) << result.output;
  EXPECT_TRUE(names(result.output, "Read-only file system", "disk/.Trash-0")) << result.output;
  EXPECT_EQ(lines(result.output), 3);
  EXPECT_EQ(contents("disk/apps/Nas.app/Contents/Info.plist"), "version 1");
  EXPECT_FALSE(exists("disk/.Trash-0"));
}

// Every write is taken; that there is no room comes out only when the disk is asked to keep
// it. The copy waits for no disk, so this either shows while it goes on, or the copy is
// whole as far as anybody can read it.
TEST_F(Disks, ADiskThatLiesGivesTwoOrACopyThatReadsWholeAndNeverLosesTheOldOne) {
  std::string failure = mountAt("small", {"-t", "tmpfs", "-o", "size=10m", "tmpfs"});
  if (failure.empty()) failure = run({"truncate", "-s", "60M", at("small/image")});
  if (failure.empty()) failure = run({"mkfs.ext4", "-q", "-F", "-O", "^has_journal", at("small/image")});
  if (failure.empty()) failure = mountAt("disk", {"-o", "loop", at("small/image")});
  if (!failure.empty()) GTEST_SKIP() << failure;
  addProducts(30'000'000);
  ASSERT_EQ(run({"sync", "-f", at("disk")}), "") << "the old copy is on the disk";
  const CommandResult result = install();
  if (result.status == 0) {
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(differencesBetween(at("source"), at("disk/apps/Nas.app")), std::vector<std::string>{});
  } else {
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(endsWith(result.output, copyLine())) << result.output;
  }
  EXPECT_EQ(trashed(), "version 1");
  EXPECT_EQ(contents("disk/apps/bystander"), "untouched");
  EXPECT_NE(run({"sync", "-f", at("disk")}), "") << "this disk did not lie, so nothing was shown";
}

TEST_F(Disks, AMediumThatIsPulledOutMidwayEndsTheInstallationAndTheOldCopyIsInTheTrash) {
  std::string failure = mountNew("ext4", "medium", 120);
  if (failure.empty()) failure = mountNew("tmpfs", "disk", 200);
  if (!failure.empty()) GTEST_SKIP() << failure;
  addProducts(1'000'000);
  SampleTrees::makeMixed(at("medium/Nas.app"), 60'000'000);
  ChildProcess tool(command(at("medium/Nas.app")));
  while (tool.isRunning() && trashed().empty()) std::this_thread::yield();
  // Out of the tree of folders; whoever has a file of it open may go on, so the tool
  // may be done with what it holds.
  ASSERT_EQ(::umount2(at("medium").c_str(), MNT_DETACH), 0);
  const auto status = tool.waitForEnd(50);
  ASSERT_TRUE(status) << "hangs";
  EXPECT_TRUE(*status == 0 || *status == 2) << *status;
  if (*status == 2) {
    EXPECT_TRUE(endsWith(tool.output(), copyLine())) << tool.output();
  }
  EXPECT_EQ(trashed(), "version 1");
  EXPECT_EQ(contents("disk/apps/bystander"), "untouched");
}

TEST_F(Disks, AnOriginalWithABadSpotGivesTwo) {
  // The image is cut off behind the file system's back: what lay there can no longer be read.
  std::string failure = mountNew("ext4", "medium", 64);
  if (failure.empty()) failure = mountNew("tmpfs", "disk", 200);
  if (!failure.empty()) GTEST_SKIP() << failure;
  addProducts(1'000'000);
  SampleTrees::makeBigFile(at("medium/Nas.app"), 30'000'000);
  ASSERT_EQ(run({"sync", "-f", at("medium")}), "");
  ASSERT_EQ(run({"truncate", "-s", "12M", at("medium.image")}), "");
  const FileDescriptor file(::open(at("medium/Nas.app/big.bin").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED), 0);
  const CommandResult result = runCommand(command(at("medium/Nas.app")), {}, 50);
  EXPECT_EQ(result.status, 2) << result.output;
  EXPECT_TRUE(endsWith(result.output, copyLine())) << result.output;
  EXPECT_TRUE(names(result.output, "Input/output error", "medium/Nas.app/big.bin")) << result.output;
  EXPECT_EQ(trashed(), "version 1");
}

TEST_F(Disks, ACopyThatIsClonedSharesItsBlocks) {
  for (const char* kind : {"btrfs", "xfs"}) {
    const std::string failure = mountNew(kind, std::string("disk-") + kind, 400);
    if (!failure.empty()) GTEST_SKIP() << failure;
    const std::string disk = std::string("disk-") + kind;
    SampleTrees::makeBigFile(at(disk + "/from"), 40'000'000);
    ASSERT_EQ(run({"sync", "-f", at(disk)}), "");
    const auto free = [&] { return std::filesystem::space(at(disk)).free; };
    const auto before = free();
    ASSERT_TRUE(copy(disk + "/from", disk + "/to"));
    ASSERT_EQ(run({"sync", "-f", at(disk)}), "");
    EXPECT_LT(before - free(), 10'000'000u) << kind;
    EXPECT_EQ(differencesBetween(at(disk + "/from"), at(disk + "/to")), std::vector<std::string>{});
  }
}

}  // namespace
}  // namespace halvorn
