// The copy on a real disk: everything that belongs to a file arrives, and nothing in a tree leads out of it.
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/sysmacros.h>

#include <set>

#include "Platform/files/posix/copy/FileContents.h"
#include "tests/files/adapter/CopyScene.h"
#include "tests/support/FailureText.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SampleTrees.h"

namespace halvorn {
namespace {

class TreeCopy : public CopyScene {
 protected:
  void setTimes(const std::string& path, timespec access, timespec change) {
    const timespec times[] = {access, change};
    ASSERT_EQ(::utimensat(AT_FDCWD, at(path).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  }
};

class HugeTreeCopy : public CopyScene {
 protected:
  HugeTreeCopy() : CopyScene(folderInMemory()) {}
};

TEST_F(TreeCopy, EveryModeOfAFileArrives) {
  addFolder("from");
  for (mode_t bits = 0; bits < 01000; ++bits) {
    if (!isRoot() && (bits & S_IRUSR) == 0)
      continue;  // its owner may not read it, so nobody here can copy it
    const std::string name = "from/" + std::to_string(bits);
    addFile(name);
    ASSERT_EQ(::chmod(at(name).c_str(), bits), 0);
  }
  ASSERT_TRUE(copy());
  for (mode_t bits = 0; bits < 01000; ++bits) {
    if (!exists("from/" + std::to_string(bits))) continue;
    EXPECT_EQ(mode("to/" + std::to_string(bits)), bits);
  }
}

TEST_F(TreeCopy, SetIdAndStickyBitsOfOnesOwnFilesArrive) {
  for (const mode_t bits : {04755u, 02755u, 01644u, 06711u}) {
    const std::string name = "from/" + std::to_string(bits);
    addFile(name);
    ASSERT_EQ(::chmod(at(name).c_str(), bits), 0);
  }
  addFolder("from/folder");
  ASSERT_EQ(::chmod(at("from/folder").c_str(), 03775), 0);
  ASSERT_TRUE(copy());
  for (const mode_t bits : {04755u, 02755u, 01644u, 06711u})
    EXPECT_EQ(mode("to/" + std::to_string(bits)), bits);
  EXPECT_EQ(mode("to/folder"), 03775u);
}

TEST_F(TreeCopy, ModesOfFoldersArriveAlsoWhenNobodyMayWriteInThem) {
  addFile("from/closed/file");
  ASSERT_EQ(::chmod(at("from/closed").c_str(), 0555), 0);
  ASSERT_EQ(::chmod(at("from").c_str(), 0500), 0);
  ASSERT_TRUE(copy());
  EXPECT_EQ(mode("to/closed"), 0555u);
  EXPECT_EQ(mode("to"), 0500u);
  EXPECT_EQ(contents("to/closed/file"), "x");
  for (const char* path : {"from", "from/closed", "to", "to/closed"}) (void)::chmod(at(path).c_str(), 0755);
}

TEST_F(TreeCopy, AFolderThatMayNotBeEnteredFailsForAnOrdinaryUser) {
  addFile("from/closed/file");
  ASSERT_EQ(::chmod(at("from/closed").c_str(), 0), 0);
  const OrdinaryUser user(at(""));
  EXPECT_FALSE(copy());
  ASSERT_EQ(::chmod(at("from/closed").c_str(), 0755), 0);
}

TEST_F(TreeCopy, TimesArriveToTheNanosecondAlsoFromBefore1970) {
  addFile("from/file");
  addFile("from/old");
  addFolder("from/folder");
  addLink("from/link", "file");
  setTimes("from/file", {1'234'567'890, 123'456'789}, {1'111'111'111, 987'654'321});
  setTimes("from/old", {-1'000, 5}, {-86'400, 7});
  setTimes("from/link", {1'000'000'000, 1}, {1'000'000'001, 2});
  setTimes("from/folder", {1'200'000'000, 3}, {1'200'000'001, 4});
  setTimes("from", {1'300'000'000, 5}, {1'300'000'001, 6});
  ASSERT_TRUE(copy());
  for (const char* name : {"", "/file", "/old", "/folder", "/link"}) {
    const auto source = facts(std::string("from") + name);
    const auto target = facts(std::string("to") + name);
    EXPECT_EQ(target.st_mtim.tv_sec, source.st_mtim.tv_sec) << name;
    EXPECT_EQ(target.st_mtim.tv_nsec, source.st_mtim.tv_nsec) << name;
  }
  EXPECT_EQ(facts("to/file").st_atim.tv_nsec, 123'456'789);
}

TEST_F(TreeCopy, LinksArriveAsLinksWhereverTheyLead) {
  addFile("outside", "secret");
  addFolder("from");
  addLink("from/absolute", at("outside"));
  addLink("from/up", "../outside");
  addLink("from/nowhere", "nowhere");
  addLink("from/self", "self");
  addLink("from/a", "b");
  addLink("from/b", "a");
  addLink("from/folder", ".");
  const std::string longest(4095, 'l');
  const bool hasLongest = ::symlink(longest.c_str(), at("from/longest").c_str()) == 0;
  ASSERT_TRUE(copy());
  for (const char* name : {"absolute", "up", "nowhere", "self", "a", "b", "folder"}) {
    EXPECT_EQ(std::filesystem::read_symlink(at(std::string("to/") + name)),
              std::filesystem::read_symlink(at(std::string("from/") + name)));
  }
  if (hasLongest) {
    EXPECT_EQ(std::filesystem::read_symlink(at("to/longest")).string().size(), 4095u);
  }
}

TEST_F(TreeCopy, HardLinksWithinTheTreeStayOneFile) {
  addFile("from/a/first", "shared");
  addFolder("from/b/c");
  ASSERT_EQ(::link(at("from/a/first").c_str(), at("from/a/second").c_str()), 0);
  ASSERT_EQ(::link(at("from/a/first").c_str(), at("from/b/c/third").c_str()), 0);
  addLink("from/link", "a/first");
  const bool linksLink =
      ::linkat(AT_FDCWD, at("from/link").c_str(), AT_FDCWD, at("from/b/link").c_str(), 0) == 0;
  ASSERT_TRUE(copy());
  EXPECT_EQ(facts("to/a/first").st_nlink, 3u);
  EXPECT_EQ(facts("to/a/first").st_ino, facts("to/a/second").st_ino);
  EXPECT_EQ(facts("to/a/first").st_ino, facts("to/b/c/third").st_ino);
  EXPECT_NE(facts("to/a/first").st_ino, facts("from/a/first").st_ino);
  if (linksLink) {
    EXPECT_EQ(facts("to/link").st_ino, facts("to/b/link").st_ino);
  }
}

TEST_F(TreeCopy, AHardLinkFromOutsideIsCopiedAsAFileOfItsOwn) {
  addFile("outside", "shared");
  addFolder("from");
  ASSERT_EQ(::link(at("outside").c_str(), at("from/file").c_str()), 0);
  ASSERT_TRUE(copy());
  EXPECT_EQ(facts("to/file").st_nlink, 1u);
  EXPECT_NE(facts("to/file").st_ino, facts("outside").st_ino);
  EXPECT_EQ(contents("to/file"), "shared");
}

TEST_F(TreeCopy, ExtendedAttributesArriveOnFilesAndFoldersAlsoOnReadOnlyOnes) {
  addFile("from/file");
  addFile("from/readonly");
  if (!setAttribute("from/file", "user.note", "hello")) GTEST_SKIP() << "no attributes on this file system";
  ASSERT_TRUE(setAttribute("from/file", "user.empty", ""));
  ASSERT_TRUE(setAttribute("from/file", "user.bytes", std::string("\0\xFF\n", 3)));
  ASSERT_TRUE(setAttribute("from/file", "user.long", std::string(1'500, 'l')));
  ASSERT_TRUE(setAttribute("from", "user.folder", "top"));
  ASSERT_TRUE(setAttribute("from/readonly", "user.note", "kept"));
  ASSERT_EQ(::chmod(at("from/readonly").c_str(), 0444), 0);
  ASSERT_TRUE(copy());
  EXPECT_EQ(attribute("to/file", "user.note"), "hello");
  EXPECT_EQ(attribute("to/file", "user.empty"), "");
  EXPECT_EQ(attribute("to/file", "user.bytes"), std::string("\0\xFF\n", 3));
  EXPECT_EQ(attribute("to/file", "user.long"), std::string(1'500, 'l'));
  EXPECT_EQ(attribute("to", "user.folder"), "top");
  EXPECT_EQ(attribute("to/readonly", "user.note"), "kept");
  EXPECT_EQ(mode("to/readonly"), 0444u);
}

TEST_F(TreeCopy, HolesStayHolesAtTheStartTheEndAndBetween) {
  addFolder("from");
  constexpr off_t size = 40 << 20;
  for (const auto& [name, offset] :
       {std::pair{"start", size - 5}, {"between", off_t{8} << 20}, {"end", off_t{0}}}) {
    const FileDescriptor file(
        ::open(at(std::string("from/") + name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    ASSERT_EQ(::pwrite(file.get(), "DATA!", 5, offset), 5);
    ASSERT_EQ(::ftruncate(file.get(), size), 0);
  }
  if (facts("from/start").st_blocks * 512 >= size) GTEST_SKIP() << "no holes on this file system";
  ASSERT_TRUE(copy());
  for (const char* name : {"start", "between", "end"}) {
    const std::string target = std::string("to/") + name;
    EXPECT_EQ(facts(target).st_size, size);
    EXPECT_LT(facts(target).st_blocks * 512, 1 << 20) << name;
    EXPECT_TRUE(contents(target) == contents(std::string("from/") + name)) << name;
  }
}

TEST_F(TreeCopy, BigFilesThatSeveralThreadsCopyArriveWhole) {
  SampleTrees::makeBigFile(at("from"), (33 << 20) + 12'345);
  setTimes("from/big.bin", {1'000'000'000, 1}, {1'000'000'001, 2});
  ASSERT_TRUE(copy());
  EXPECT_TRUE(contents("to/big.bin") == contents("from/big.bin"));
  EXPECT_EQ(facts("to/big.bin").st_mtim.tv_sec, 1'000'000'001);
}

TEST_F(TreeCopy, PipesSocketsAndEmptyFilesArriveAndNeverBlock) {
  addFile("from/empty", "");
  ASSERT_EQ(::mkfifo(at("from/pipe").c_str(), 0640), 0);
  ASSERT_EQ(::mknod(at("from/socket").c_str(), S_IFSOCK | 0600, 0), 0);
  ASSERT_TRUE(copy());
  EXPECT_TRUE(S_ISFIFO(facts("to/pipe").st_mode));
  EXPECT_EQ(mode("to/pipe"), 0640u);
  EXPECT_TRUE(S_ISSOCK(facts("to/socket").st_mode));
  EXPECT_EQ(facts("to/empty").st_size, 0);
}

TEST_F(TreeCopy, APipeALinkOrAFileAloneIsCopied) {
  ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
  addFile("file", "contents");
  addLink("link", "file");
  EXPECT_TRUE(copy("pipe", "pipe2"));
  EXPECT_TRUE(copy("file", "file2"));
  EXPECT_TRUE(copy("link", "link2"));
  EXPECT_TRUE(S_ISFIFO(facts("pipe2").st_mode));
  EXPECT_EQ(contents("file2"), "contents");
  EXPECT_TRUE(S_ISLNK(facts("link2").st_mode));
}

TEST_F(TreeCopy, DeviceNodesAreTheAdministrators) {
  if (!isRoot()) GTEST_SKIP() << "only the administrator can make one";
  addFolder("from");
  if (::mknod(at("from/null").c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0)
    GTEST_SKIP() << "this container lets nobody make device nodes";
  ASSERT_TRUE(copy());
  EXPECT_TRUE(S_ISCHR(facts("to/null").st_mode));
  EXPECT_EQ(facts("to/null").st_rdev, makedev(1, 3));
  PosixFileManager guarded({.ownership = Ownership::ThisProcess});
  EXPECT_EQ(textOf(guarded.copyItem(at("from"), at("guarded"))),
            "device nodes are not made with administrator rights: " + at("from/null") + " (make)");
}

TEST_F(TreeCopy, AFailureNamesTheVeryItemWithAllItsBytes) {
  addFile("from/a/line\nbreak \xFF/file");
  ASSERT_EQ(::chmod(at("from/a/line\nbreak \xFF/file").c_str(), 0), 0);
  const OrdinaryUser user(at(""));
  EXPECT_EQ(textOf(files.copyItem(at("from") + "/", at("to"))),
            "Permission denied: " + at("from/a/line\nbreak \xFF/file") + " (open)");
}

TEST_F(TreeCopy, WhatIsRefusedIsSaidInPlainWords) {
  addFile("real/file");
  addLink("link", "real");
  PosixFileManager guarded({.links = LinksInTheWay::Refused});
  PosixFileManager pinned({.pins = std::make_shared<FolderPins>()});
  const std::string inTheWay = "a link or something else that is no folder is in the way: ";
  const std::string noPlainPath = "the path is relative or goes up with \"..\": ";
  for (PosixFileManager* refusing : {&guarded, &pinned}) {
    const auto copying = [&](const std::string& to) {
      return textOf(refusing->copyItem(at("real/file"), to));
    };
    EXPECT_EQ(copying(at("link/to")), inTheWay + at("link/to") + " (reach)");
    EXPECT_EQ(copying(at("real/../to")), noPlainPath + at("real/../to") + " (reach)");
    EXPECT_EQ(copying("to"), noPlainPath + "to (reach)");
    EXPECT_EQ(copying("/"), "the path names nothing in a folder: / (reach)");
    EXPECT_EQ(copying(at("missing/to")), "No such file or directory: " + at("missing/to") + " (reach)");
  }
}

TEST_F(TreeCopy, NamesOf255BytesAndOfAnyByteArrive) {
  std::set<std::string> names = {std::string(255, 'n')};
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') names.insert(std::string("b") + static_cast<char>(byte));
  }
  for (const std::string& name : names) addFile("from/" + name, name);
  ASSERT_TRUE(copy());
  for (const std::string& name : names) EXPECT_EQ(contents("to/" + name), name);
}

// Makes folders within each other, deeper than any path can say.
void makeDeepFolders(const std::string& top, int levels) {
  FileDescriptor at(::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int level = 0; level < levels; ++level) {
    ASSERT_EQ(::mkdirat(at.get(), "folder", 0755), 0);
    FileDescriptor inner(::openat(at.get(), "folder", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FileDescriptor file(::openat(inner.get(), "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    ASSERT_TRUE(file.isOpen());
    at = std::move(inner);
  }
}

int countDeepFolders(const std::string& top) {
  FileDescriptor at(::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  int levels = 0;
  while (true) {
    FileDescriptor inner(::openat(at.get(), "folder", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!inner || ::faccessat(inner.get(), "file", F_OK, 0) != 0) return levels;
    at = std::move(inner);
    ++levels;
  }
}

TEST_F(HugeTreeCopy, TwoThousandLevelsAreCopiedAndRemovedWithFewDescriptors) {
  addFolder("from");
  makeDeepFolders(at("from"), 2'000);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few{.rlim_cur = 200, .rlim_max = before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  EXPECT_TRUE(copy());
  EXPECT_EQ(countDeepFolders(at("to")), 2'000);
  EXPECT_EQ(textOf(files.removeItem(at("to"))), "");
  EXPECT_EQ(textOf(files.removeItem(at("from"))), "");
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_FALSE(exists("to"));
}

TEST_F(HugeTreeCopy, ThousandsOfFilesInOneFolderAndInManyArrive) {
  SampleTrees::makeManyFiles(at("from"), 3'000, 3'000);
  SampleTrees::makeManyFiles(at("from/many"), 3'000, 7);
  ASSERT_TRUE(copy());
  const auto count = [&](const std::string& path) {
    return std::distance(std::filesystem::recursive_directory_iterator(at(path)), {});
  };
  EXPECT_EQ(count("to"), count("from"));
}

TEST_F(TreeCopy, WhatAFolderHandsDownToNewItemsDoesNotReachTheCopy) {
  addFolder("handing");
  // version 2; owner rwx, group rwx, mask rwx, others rwx, and everything for user 12345
  const std::string list(
      "\2\0\0\0\1\0\7\0\xFF\xFF\xFF\xFF\2\0\7\0\x39\x30\0\0\4\0\7\0\xFF\xFF\xFF\xFF"
      "\x10\0\7\0\xFF\xFF\xFF\xFF\x20\0\7\0\xFF\xFF\xFF\xFF",
      44);
  if (!setAttribute("handing", "system.posix_acl_default", list)) GTEST_SKIP() << "no access lists here";
  ASSERT_EQ(::chmod(at("handing").c_str(), 02777), 0);
  addFile("from/inner/file");
  ASSERT_EQ(::chmod(at("from/inner/file").c_str(), 0640), 0);
  ASSERT_EQ(::chmod(at("from").c_str(), 0750), 0);
  ASSERT_TRUE(copy("from", "handing/to"));
  ASSERT_TRUE(copy("from/inner/file", "handing/file"));
  for (const char* name : {"handing/to", "handing/to/inner", "handing/to/inner/file", "handing/file"}) {
    EXPECT_EQ(attribute(name, "system.posix_acl_access"), "(none)") << name;
    EXPECT_EQ(attribute(name, "system.posix_acl_default"), "(none)") << name;
  }
  EXPECT_EQ(mode("handing/to"), 0750u);
  EXPECT_EQ(mode("handing/to/inner/file"), 0640u);
  EXPECT_EQ(mode("handing/file"), 0640u);
}

TEST_F(TreeCopy, AccessListsArriveWithTheDefaultOnesOfFolders) {
  addFile("from/inner/file");
  const std::string list(
      "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\4\0\x39\x30\0\0\4\0\4\0\xFF\xFF\xFF\xFF"
      "\x10\0\4\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF",
      44);
  if (!setAttribute("from/inner/file", "system.posix_acl_access", list))
    GTEST_SKIP() << "no access lists here";
  ASSERT_TRUE(setAttribute("from", "system.posix_acl_default", list));
  ASSERT_TRUE(copy());
  EXPECT_EQ(attribute("to/inner/file", "system.posix_acl_access"), list);
  EXPECT_EQ(attribute("to", "system.posix_acl_default"), list);
  EXPECT_EQ(attribute("to/inner", "system.posix_acl_default"), "(none)");
  EXPECT_EQ(mode("to/inner/file"), mode("from/inner/file"));
}

TEST_F(TreeCopy, OwnersAndCapabilitiesArriveForTheAdministrator) {
  if (!isRoot()) GTEST_SKIP() << "only the administrator gives files away";
  addFile("from/file");
  addLink("from/link", "file");
  ASSERT_EQ(::chown(at("from/file").c_str(), 1234, 2345), 0);
  ASSERT_EQ(::lchown(at("from/link").c_str(), 1234, 2345), 0);
  ASSERT_EQ(::chmod(at("from/file").c_str(), 06755), 0);
  const std::string capability("\1\0\0\2\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
  const bool hasCapabilities = setAttribute("from/file", "security.capability", capability);
  ASSERT_TRUE(copy());
  EXPECT_EQ(facts("to/file").st_uid, 1234u);
  EXPECT_EQ(facts("to/file").st_gid, 2345u);
  EXPECT_EQ(facts("to/link").st_uid, 1234u);
  EXPECT_EQ(mode("to/file"), 06755u);
  if (hasCapabilities) {
    EXPECT_EQ(attribute("to/file", "security.capability"), capability);
  }
}

TEST_F(TreeCopy, WhatLendsTheAdministratorsRightsStaysBehindWhenAsked) {
  addFile("from/folder/file");
  ASSERT_EQ(::chmod(at("from/folder/file").c_str(), 06777), 0);
  ASSERT_EQ(::chmod(at("from/folder").c_str(), 02777), 0);
  if (isRoot()) {
    ASSERT_EQ(::chown(at("from/folder").c_str(), 1234, 2345), 0);
  }
  PosixFileManager guarded({.links = LinksInTheWay::Refused, .ownership = Ownership::ThisProcess});
  ASSERT_EQ(textOf(guarded.copyItem(at("from"), at("to"))), "");
  EXPECT_EQ(mode("to/folder/file"), 0755u);
  EXPECT_EQ(mode("to/folder"), 0755u);
  EXPECT_EQ(facts("to/folder").st_uid, ::geteuid());
}

TEST_F(TreeCopy, AnImmutableOriginalIsCopiedAndItsCopyCanBeChanged) {
  addFile("from/file", "fixed");
  int flags = 0;
  {
    const FileDescriptor file(::open(at("from/file").c_str(), O_RDONLY | O_CLOEXEC));
    flags = FS_IMMUTABLE_FL;
    if (::ioctl(file.get(), FS_IOC_SETFLAGS, &flags) != 0) GTEST_SKIP() << "no such flag for us here";
    EXPECT_TRUE(copy());
    flags = 0;
    ASSERT_EQ(::ioctl(file.get(), FS_IOC_SETFLAGS, &flags), 0);
  }
  EXPECT_EQ(contents("to/file"), "fixed");
  EXPECT_EQ(textOf(files.removeItem(at("to"))), "");
}

TEST_F(TreeCopy, ReadingLeavesTheTimeOfTheLastAccessAlone) {
  addFile("from/file");
  setTimes("from/file", {1'000'000'000, 0}, {1'500'000'000, 0});
  ASSERT_TRUE(copy());
  EXPECT_EQ(facts("from/file").st_atim.tv_sec, 1'000'000'000);
}

// The bytes of one file.
class Contents : public CopyScene {
 protected:
  explicit Contents(const std::filesystem::path& base = std::filesystem::temp_directory_path())
      : CopyScene(base), buffer(128UL * 1024) {}

  void open(const std::string& from) {
    source = FileDescriptor(::open(at(from).c_str(), O_RDONLY | O_CLOEXEC));
    target = FileDescriptor(::open(at("to").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  }
  [[nodiscard]] FileContents::Original original() {
    return {.file = source.get(), .asking = asking, .sawMissing = sawMissing};
  }
  [[nodiscard]] bool copyUpTo(off_t end) {
    return !FileContents::copyRange(original(), target.get(), 0, end, buffer);
  }
  [[nodiscard]] bool copyMappedUpTo(off_t end) {
    return !FileContents::copyRangeMapped(original(), target.get(), 0, end, buffer, mappings, 1 << 20);
  }
  // True as well where it is not tried because nobody can say what is in memory.
  [[nodiscard]] bool wasMapped() const { return mappings.hasWorked() || !asking.isWorthTrying(); }

  FileDescriptor source;
  FileDescriptor target;
  Trial asking;
  Trial mappings;
  int missing = 0;
  const std::function<void()> sawMissing = [this] { ++missing; };
  std::vector<char> buffer;
};

TEST_F(Contents, AnOriginalThatEndsBeforeItsSizeIsNoSuccess) {
  addFile("from", "cut off");
  open("from");
  EXPECT_TRUE(copyUpTo(7));
  EXPECT_FALSE(copyUpTo(8));
}

TEST_F(Contents, OfABigFileAreWrittenFromAMappingWhateverItsSize) {
  constexpr off_t size = (5 << 20) + 12'345;
  SampleTrees::makeBigFile(at("from"), size);
  open("from/big.bin");
  EXPECT_TRUE(copyMappedUpTo(size));
  EXPECT_TRUE(wasMapped());
  EXPECT_TRUE(contents("to") == contents("from/big.bin"));
}

// Looking into the mapping would end this process.
TEST_F(Contents, OfAMappedOriginalThatWasCutOffAreAFailureAndNothingWorse) {
  addFile("from", std::string(1 << 20, 'f'));
  open("from");
  EXPECT_FALSE(copyMappedUpTo(3 << 20));
  EXPECT_TRUE(wasMapped());
  EXPECT_TRUE(contents("to") == contents("from")) << "what was there has arrived";
}

class ContentsInMemory : public Contents {
 protected:
  ContentsInMemory() : Contents(folderInMemory()) {}
};

TEST_F(ContentsInMemory, CountAsMissingNowhereAlsoWhenNobodyCanSay) {
  addFile("from", "in memory all the time");
  open("from");
  EXPECT_TRUE(copyUpTo(22));
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(contents("to"), "in memory all the time");
}

TEST_F(TreeCopy, NoDescriptorStaysOpen) {
  SampleTrees::makeDeep(at("from"), 20, 3);
  const auto count = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  const auto before = count();
  ASSERT_TRUE(copy());
  EXPECT_FALSE(copy()) << "the target is there now";
  EXPECT_EQ(textOf(files.removeItem(at("to"))), "");
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace halvorn
