// The copy of whole trees from and to real file systems, held against a
// comparison of our own and two others'.
#include <linux/fs.h>
#include <sys/ioctl.h>

#include "tests/files/adapter/MountedScene.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/OddTree.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/SampleTrees.h"
#include "tests/support/TreeCompare.h"

namespace halvorn {
namespace {

class Fidelity : public MountedScene, public testing::WithParamInterface<const char*> {
 protected:
  void makeTrees(const std::string& where) {
    addFolder(where);
    SampleTrees::makeSmallFiles(at(where + "/small"), 300);
    SampleTrees::makeMixed(at(where + "/mixed"), 5'000'000);
    SampleTrees::makeBigFile(at(where + "/big"), 20'000'001);
    SampleTrees::makeDeep(at(where + "/deep"), 20, 3);
  }
  // Whether `to` is all that `from` is, by our own comparison and by two of others.
  void expectSame(const std::string& from, const std::string& to) {
    EXPECT_EQ(differencesBetween(at(from), at(to)), std::vector<std::string>{});
    const CommandResult synced = runCommand({"rsync", "-aHAX", "--checksum", "--dry-run", "--itemize-changes",
                                             "--delete", at(from) + "/", at(to) + "/"},
                                            {}, 50);
    EXPECT_EQ(synced.status, 0) << synced.output;
    EXPECT_EQ(synced.output, "");
    const std::string tar =
        "{ tar --xattrs --acls --sparse -C '" + at(from) + "' -cf - . | tar --xattrs --acls -C '" + at(to) +
        "' --compare -f -; } 2>&1 | grep -v 'socket ignored\\|flistxattr: Operation not supported'; true";
    EXPECT_EQ(runCommand({"sh", "-c", tar}, {}, 50).output, "");
  }
};

// Without the folder in front and the reasons behind.
std::vector<std::string> namesOf(const std::vector<std::string>& missing, const std::string& folder) {
  std::vector<std::string> names;
  for (const std::string& each : missing)
    names.push_back(each.substr(folder.size(), each.rfind(": ") - folder.size()));
  return names;
}

// What of the odd tree each file system cannot hold at all, mounted on the folder.
std::vector<std::string> impossibleOn(const std::string& kind, const std::string& folder) {
  if (kind == "btrfs") return {"attributes/big user.big"};
  if (kind == "xfs") return {"links/longest"};
  if (!canMakeDevices(folder)) return {"nodes/null", "nodes/loop"};
  return {};
}

TEST_P(Fidelity, TheFourBundlesArriveAsTheyAre) {
  const std::string failure = mountNew(GetParam(), "disk", 400);
  if (!failure.empty()) GTEST_SKIP() << failure;
  makeTrees("disk/from");
  ASSERT_TRUE(copy("disk/from", "disk/to"));
  expectSame("disk/from", "disk/to");
}

TEST_P(Fidelity, OdditiesArriveAsTheyAre) {
  const std::string failure = mountNew(GetParam(), "disk", 400);
  if (!failure.empty()) GTEST_SKIP() << failure;
  EXPECT_EQ(namesOf(SampleTrees::makeOdd(at("disk/from"), 100'000'000, 60), at("disk/from/")),
            impossibleOn(GetParam(), at("disk")));
  ASSERT_TRUE(copy("disk/from", "disk/to"));
  expectSame("disk/from", "disk/to");
}

TEST_P(Fidelity, AnImmutableFileArrivesAndItsCopyCanBeChanged) {
  const std::string failure = mountNew(GetParam(), "disk", 400);
  if (!failure.empty()) GTEST_SKIP() << failure;
  addFile("disk/from/file", "fixed");
  const FileDescriptor file(::open(at("disk/from/file").c_str(), O_RDONLY | O_CLOEXEC));
  int flags = FS_IMMUTABLE_FL;
  if (::ioctl(file.get(), FS_IOC_SETFLAGS, &flags) != 0) GTEST_SKIP() << "no such flag here";
  ASSERT_TRUE(copy("disk/from", "disk/to"));
  expectSame("disk/from", "disk/to");
  addFile("disk/to/file", "changed");
  EXPECT_EQ(contents("disk/to/file"), "changed");
  EXPECT_EQ(contents("disk/from/file"), "fixed");
}

TEST_P(Fidelity, AFileOfFiveGigabytesAndTwoThousandLevelsArriveAsTheyAre) {
  const std::string failure = mountNew(GetParam(), "disk", 400);
  if (!failure.empty()) GTEST_SKIP() << failure;
  // The others' comparisons read every hole and do not reach so deep.
  EXPECT_EQ(namesOf(SampleTrees::makeOdd(at("disk/from"), 5'000'000'000, 2'000), at("disk/from/")),
            impossibleOn(GetParam(), at("disk")));
  ASSERT_TRUE(copy("disk/from", "disk/to"));
  EXPECT_EQ(differencesBetween(at("disk/from"), at("disk/to")), std::vector<std::string>{});
  EXPECT_EQ(facts("disk/to/big").st_size, 5'000'000'000);
}

INSTANTIATE_TEST_SUITE_P(On, Fidelity, testing::Values("ext4", "btrfs", "xfs", "tmpfs"),
                         [](const auto& test) { return std::string(test.param); });

class FidelityAcross : public Fidelity {
 protected:
  // An image of the folder, mounted at "from"; and a disk to copy it to. Empty: both are there.
  [[nodiscard]] std::string mountImageOf(const std::string& tree) {
    std::string failure =
        run({"mksquashfs", at(tree), at("image"), "-noappend", "-quiet", "-no-progress", "-no-exports"});
    if (failure.empty()) failure = mountAt("from", {"-t", "squashfs", "-o", "loop,ro", at("image")});
    return failure.empty() ? mountNew("ext4", "disk", 300) : failure;
  }
  void makeHoles(const std::string& tree) {
    constexpr off_t size = 40'000'000;
    addFolder(tree);
    for (const auto& [name, offset] :
         {std::pair{"/start", size - 5}, {"/between", off_t{8'000'000}}, {"/end", off_t{0}}}) {
      const FileDescriptor file(::open(at(tree + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
      ASSERT_EQ(::pwrite(file.get(), "DATA!", 5, offset), 5);
      ASSERT_EQ(::ftruncate(file.get(), size), 0);
    }
  }
  void expectHoles(const std::string& tree) {
    for (const char* name : {"/start", "/between", "/end"})
      EXPECT_LE(facts(tree + name).st_blocks * 512, 256 << 10) << name;
  }
};

TEST_F(FidelityAcross, FromSquashfsToExt4) {
  SampleTrees::makeSmallFiles(at("tree"), 300);
  SampleTrees::makeDeep(at("tree/deep"), 12, 3);
  const std::string failure = mountImageOf("tree");
  if (!failure.empty()) GTEST_SKIP() << failure;
  ASSERT_TRUE(copy("from", "disk/to"));
  expectSame("from", "disk/to");
}

TEST_F(FidelityAcross, OdditiesFromSquashfsToExt4) {
  std::string failure = mountNew("ext4", "work", 300);
  if (failure.empty()) {
    EXPECT_EQ(SampleTrees::makeOdd(at("work/tree"), 100'000'000, 60), std::vector<std::string>{});
    failure = mountImageOf("work/tree");
  }
  if (!failure.empty()) GTEST_SKIP() << failure;
  ASSERT_TRUE(copy("from", "disk/to"));
  expectSame("from", "disk/to");
}

TEST_F(FidelityAcross, HolesFromSquashfsStayHoles) {
  makeHoles("tree");
  const std::string failure = mountImageOf("tree");
  if (!failure.empty()) GTEST_SKIP() << failure;
  ASSERT_TRUE(copy("from", "disk/to"));
  expectSame("from", "disk/to");
  expectHoles("disk/to");
}

TEST_F(FidelityAcross, HolesStayHolesAlsoFromWhereNobodyCanSayWhereTheyAre) {
  std::string failure = mountAt("from", {"-t", "ramfs", "ramfs"});
  if (failure.empty()) failure = mountNew("ext4", "disk", 300);
  if (!failure.empty()) GTEST_SKIP() << failure;
  makeHoles("from/tree");
  const FileDescriptor file(::open(at("from/tree/end").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::lseek(file.get(), 0, SEEK_HOLE), facts("from/tree/end").st_size);
  ASSERT_TRUE(copy("from/tree", "disk/to"));
  expectSame("from/tree", "disk/to");
  expectHoles("disk/to");
}

TEST_F(FidelityAcross, OnAnOverlay) {
  // Attributes of the layers need a file system that has them.
  std::string failure = mountNew("ext4", "disk", 300);
  for (const char* part : {"disk/lower", "disk/upper", "disk/work"}) addFolder(part);
  if (failure.empty()) {
    makeTrees("disk/lower/from");
    EXPECT_EQ(SampleTrees::makeOdd(at("disk/lower/from/odd"), 100'000'000, 60), std::vector<std::string>{});
    const std::string layers =
        "lowerdir=" + at("disk/lower") + ",upperdir=" + at("disk/upper") + ",workdir=" + at("disk/work");
    failure = mountAt("both", {"-t", "overlay", "-o", layers, "overlay"});
  }
  if (!failure.empty()) GTEST_SKIP() << failure;
  ASSERT_TRUE(copy("both/from", "both/to"));
  expectSame("both/from", "both/to");
}

TEST_F(FidelityAcross, FromExt4ToAFileSystemWithLess) {
  std::string failure = mountNew("ext4", "disk", 100);
  if (failure.empty()) failure = mountAt("plain", {"-t", "ramfs", "ramfs"});
  if (!failure.empty()) GTEST_SKIP() << failure;
  addFile("disk/from/file", "kept");
  ASSERT_TRUE(setAttribute("disk/from/file", "user.note", "hello"));
  EXPECT_TRUE(copy("disk/from", "plain/to")) << "what has no place there is no failure";
  EXPECT_EQ(contents("plain/to/file"), "kept");
}

// The comparison is worth nothing unless it sees what is wrong.
TEST(TreeCompare, EveryKindOfDifferenceIsSeen) {
  TemporaryFolder folder;
  SampleTrees::makeDeep(folder / "from", 3, 1);
  const auto differences = [&](const std::string& change) {
    EXPECT_EQ(runCommand({"sh", "-c",
                          "cd '" + folder.path().string() +
                              "' && rm -rf to && cp -a from to && cd to/branch0 && " + change})
                  .status,
              0)
        << change;
    return differencesBetween(folder / "from", folder / "to");
  };
  EXPECT_EQ(differences("true"), std::vector<std::string>{});
  const char* const keep = " && touch -r ../../from/branch0 .";
  for (const std::string change :
       {"chmod 700 file", "touch -d 2001-01-01 file",
        "printf x | dd of=file conv=notrunc 2>/dev/null; touch -r ../../from/branch0/file file", "rm broken",
        "ln -sfn elsewhere link", "cp -p file f2; mv f2 hard", "touch extra", "rm file; mkfifo file",
        "touch -h -d 2001-01-01 link"}) {
    EXPECT_NE(differences(change + keep), std::vector<std::string>{}) << change;
  }
}

}  // namespace
}  // namespace halvorn
