// Attacks with files prepared beforehand.
#include <linux/capability.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/support/OwnMounts.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class FileAttacks : public AttackTest {};

Harm harmTo(const std::string& path, const std::string& before) {
  const std::string after = pictureOf(path);
  return after == before ? std::nullopt : Harm("before:\n" + before + "after:\n" + after);
}

TEST_F(FileAttacks, TheDestinationsParentIsALink) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "victim");
    scene.addLink(scene / "Applications", scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    if (scene.install(scene / "source/Nas.app", scene / "Applications/Nas.app").status == 0)
      return "exits with 0";
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, AFolderAboveTheDestinationsParentIsALink) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "victim/Applications");
    scene.addLink(scene / "disk", scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "disk/Applications/Nas.app");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, TheOldCopyBehindALinkIsNotTrashed) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "victim/Nas.app", AttackScene::root);
    scene.addLink(scene / "Applications", scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "Applications/Nas.app");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, ASourceThatOnlyRootCanReadIsNotRead) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "private", 0700);
    scene.addFile(scene / "private/Nas.app/data", "secret");
    scene.addFolder(scene / "target");
    (void)scene.install(scene / "private/Nas.app", scene / "target/Nas.app");
    return findBelow(scene / "target", [](const std::string& path) { return bytesOf(path) == "secret"; });
  });
}

TEST_F(FileAttacks, ASourceThatLiesBehindALinkIntoAPrivateFolderIsNotRead) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "private", 0700);
    scene.addFile(scene / "private/Nas.app/data", "secret");
    scene.addLink(scene / "medium", scene / "private", AttackScene::person);
    scene.addFolder(scene / "target");
    (void)scene.install(scene / "medium/Nas.app", scene / "target/Nas.app");
    return findBelow(scene / "target", [](const std::string& path) { return bytesOf(path) == "secret"; });
  });
}

TEST_F(FileAttacks, OneFileThatOnlyRootCanReadIsNotRead) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/data", "secret", 0600);
    scene.addFolder(scene / "target");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    return findBelow(scene / "target", [](const std::string& path) { return bytesOf(path) == "secret"; });
  });
}

TEST_F(FileAttacks, AWrapperThatOnlyRootCanReadIsNotRead) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "private", 0700);
    scene.addFile(scene / "private/extra", "secret");
    scene.addFolder(scene / "target");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "private");
    return findBelow(scene / "target", [](const std::string& path) { return bytesOf(path) == "secret"; });
  });
}

// The wrapper becomes the destination's parent, and is a link.
TEST_F(FileAttacks, ALinkOfTheSourceIsNotWalkedThroughAfterwards) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "victim");
    scene.addLink(scene / "wrapper", scene / "victim", AttackScene::person);
    scene.addFolder(scene / "target");
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas/Nas.app", scene / "wrapper");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, AWrapperItemInThePlaceOfALinkToAFolderLeavesTheFolderAlone) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "wrapper/Extras/new", "new", 0644, AttackScene::person);
    scene.addFile(scene / "victim/data", "data");
    scene.addLink(scene / "target/Extras", scene / "victim");
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, AWrapperItemInThePlaceOfALinkToAFileLeavesTheFileAlone) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "wrapper/notes", "new", 0644, AttackScene::person);
    scene.addFile(scene / "victim", "data");
    scene.addLink(scene / "target/notes", scene / "victim");
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, AWrapperItemInThePlaceOfAHardLinkLeavesTheOtherNameAlone) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "wrapper/notes", "new", 0644, AttackScene::person);
    scene.addFile(scene / "victim", "data");
    scene.addFolder(scene / "target");
    fs::create_hard_link(scene / "victim", scene / "target/notes");
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, AForeignFileThatStandsInTheOldCopyAsAHardLinkKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "victim", "data");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    fs::create_hard_link(scene / "victim", scene / "target/Nas.app/Contents/extra");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    if (factsOf(scene / "victim")->st_uid != AttackScene::root) return "given away";
    return std::nullopt;
  });
}

TEST_F(FileAttacks, WhatNobodyCouldReadInTheOldCopyStaysUnreadableInTheTrash) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    scene.addFile(scene / "target/Nas.app/Contents/licence", "secret", 0600);
    scene.addFolder(scene / "target/Nas.app/Contents/closed", 0700);
    scene.addFile(scene / "target/Nas.app/Contents/closed/data", "secret");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    const auto found =
        runCommand(scene.world().asPerson({"grep", "-rls", "secret", scene.world().homeFolder()}));
    if (!found.output.empty()) return found.output;
    return std::nullopt;
  });
}

// Somebody else's file, dropped into a folder of the old copy that everybody may write.
TEST_F(FileAttacks, WhatStandsInAnOpenFolderOfTheOldCopyKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    scene.addFolder(scene / "target/Nas.app/Contents/Shared", 0777);
    scene.addFile(scene / "target/Nas.app/Contents/Shared/dropped", "slipped in");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    return findBelow(scene.world().homeFolder(), [](const std::string& path) {
      return path.ends_with("/dropped") && factsOf(path)->st_uid == AttackScene::person;
    });
  });
}

TEST_F(FileAttacks, ATrashThatIsALinkReceivesNothing) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    scene.addFolder(scene / "victim/files");
    scene.addFolder(scene / "victim/info");
    const std::string trash = scene.world().homeFolder() + "/.local/share/Trash";
    fs::remove_all(scene.world().homeFolder() + "/.local");
    scene.addLink(trash, scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    fs::remove(trash);
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, ATopFolderTrashThatIsALinkReceivesNothing) {
  // Where the home folder lies on another disk. The naive tool knows only the home folder's Trash.
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addSmallDisk(scene / "target", "1m");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    scene.addFolder(scene / "victim/files");
    scene.addFolder(scene / "victim/info");
    scene.addLink(scene / "target/.Trash-64101", scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.status != 1) return "exits with " + std::to_string(run.status);
    return harmTo(scene / "victim", before);
  });
}

TEST_F(FileAttacks, APipeInTheSourceIsCopiedUnopened) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    ::mkfifo((scene / "source/Nas.app/pipe").c_str(), 0644);
    scene.addFolder(scene / "target");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.hangs()) return "waits for the other end of the pipe";
    if (run.status != 0) return "exits with " + std::to_string(run.status);
    if (!fs::is_fifo(scene / "target/Nas.app/pipe")) return "no pipe";
    return std::nullopt;
  });
}

TEST_F(FileAttacks, ASourceThatIsAPipeDoesNotHang) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "source");
    ::mkfifo((scene / "source/Nas.app").c_str(), 0644);
    scene.addFolder(scene / "target");
    return scene.install(scene / "source/Nas.app", scene / "target/Nas.app").hangs() ? Harm("hangs")
                                                                                     : std::nullopt;
  });
}

TEST_F(FileAttacks, ASocketInTheSourceIsCopiedUnopened) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::strcpy(address.sun_path, (scene / "source/Nas.app/socket").c_str());
    if (::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return "no socket";
    ::close(socket);
    scene.addFolder(scene / "target");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.status != 0 || !fs::is_socket(scene / "target/Nas.app/socket"))
      return "not copied: " + run.output;
    return std::nullopt;
  });
}

TEST_F(FileAttacks, ADeviceNodeIsNeitherReadNorMade) {
  if (!canMakeDevices("/opt")) GTEST_SKIP() << "no device nodes in a user name space";
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    constexpr dev_t zeroDevice = 0x105;
    if (::mknod((scene / "source/Nas.app/device").c_str(), S_IFCHR | 0666, zeroDevice) != 0)
      return "no device";
    scene.addSmallDisk(scene / "target", "1m");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.hangs()) return "reads without end";
    const auto made = factsOf(scene / "target/Nas.app/device");
    if (made && S_ISCHR(made->st_mode)) return "made a device";
    if (made && made->st_size > 0) return "read the device";
    return run.status == 0 ? Harm("exits with 0") : std::nullopt;
  });
}

TEST_F(FileAttacks, SetUserIdAndSetGroupIdAreNotLentByTheAdministrator) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/user", "program", 04755, AttackScene::person);
    scene.addFile(scene / "source/Nas.app/group", "program", 02755, AttackScene::person);
    scene.addFolder(scene / "source/Nas.app/folder", 02755, AttackScene::person);
    scene.addFolder(scene / "target");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    return findBelow(scene / "target", [](const std::string& path) {
      return (factsOf(path)->st_mode & (S_ISUID | S_ISGID)) != 0;
    });
  });
}

TEST_F(FileAttacks, FileCapabilitiesStayBehind) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    vfs_cap_data capabilities{};
    capabilities.magic_etc = VFS_CAP_REVISION_2 | VFS_CAP_FLAGS_EFFECTIVE;
    capabilities.data[0].permitted = 1U << CAP_DAC_OVERRIDE;
    const std::string program = scene / "source/Nas.app/Contents/Linux/Nas";
    if (::setxattr(program.c_str(), "security.capability", &capabilities, XATTR_CAPS_SZ_2, 0) != 0)
      return "cannot";
    scene.addFolder(scene / "target");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    const std::string copy = scene / "target/Nas.app/Contents/Linux/Nas";
    return ::getxattr(copy.c_str(), "security.capability", nullptr, 0) >= 0 ? Harm("lent") : std::nullopt;
  });
}

TEST_F(FileAttacks, NobodyElseMayWriteWhatWasInstalled) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/open", "program", 0777, AttackScene::person);
    scene.addFolder(scene / "source/Nas.app/folder", 01777, AttackScene::person);
    scene.addFolder(scene / "target");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    return findBelow(scene / "target", [](const std::string& path) {
      return !fs::is_symlink(path) && (factsOf(path)->st_mode & (S_IWGRP | S_IWOTH)) != 0;
    });
  });
}

// A folder for a group of its own, whose members may write what is made in it.
TEST_F(FileAttacks, EverythingBelongsToRootWhateverTheFolderHandsDown) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addLink(scene / "source/Nas.app/link", "Contents", AttackScene::person);
    scene.addFolder(scene / "target");
    if (::chown((scene / "target").c_str(), 0, PolkitWorld::extraGroupId) != 0) return "cannot";
    ::chmod((scene / "target").c_str(), 02775);
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    return findBelow(scene / "target/Nas.app", [](const std::string& path) {
      return factsOf(path)->st_uid != 0 || factsOf(path)->st_gid != 0;
    });
  });
}

TEST_F(FileAttacks, AnAccessListDoesNotGiveTheCopyToSomebody) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    const std::string program = scene / "source/Nas.app/Contents/Linux/Nas";
    const auto granted = runCommand({"setfacl", "-m", "u:halvorn-person:rwx", program});
    if (granted.status != 0) return std::nullopt;  // no access lists here
    scene.addFolder(scene / "target");
    if (scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status != 0)
      return "does not install";
    const std::string copy = scene / "target/Nas.app/Contents/Linux/Nas";
    const auto attempt = runCommand(scene.world().asPerson({"sh", "-c", "echo x >>" + copy}));
    return attempt.status == 0 ? Harm("the person writes the copy") : std::nullopt;
  });
}

TEST_F(FileAttacks, ANameWithALineEndForgesNoLineOfTheLog) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "wrapper/x\nERROR -- forged", std::string(200'000, 'x'), 0644, AttackScene::person);
    scene.addSmallDisk(scene / "target", "64k");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    return run.output.find("\nERROR -- forged") != std::string::npos ? Harm(run.output) : std::nullopt;
  });
}

TEST_F(FileAttacks, HostileNamesAreNamesAndNothingElse) {
  expectHarmless([](AttackScene& scene) -> Harm {
    const std::vector<std::string> names{
        "-rf",  "--",       "...",          " ", "%@%n%s",   "$(touch pwned)", "`id`", "*",
        "a\nb", "\xff\xfe", "\xed\xb2\x80", "~", "..hidden", "a\\b",           "'\"",  std::string(255, 'n')};
    scene.addProduct(scene / "source/Nas.app");
    for (const std::string& name : names) {
      scene.addFile(scene / ("wrapper/" + name), name, 0644, AttackScene::person);
      scene.addFile(scene / ("target/" + name), "old");
    }
    scene.addFile(scene / "target/bystander", "data");
    scene.addFile(scene / "bystander", "data");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    if (run.status != 0) return "exits with " + std::to_string(run.status) + ": " + run.output;
    for (const std::string& name : names) {
      if (bytesOf(scene / ("target/" + name)) != name) return "not copied: " + name;
    }
    const auto count = std::distance(fs::directory_iterator(scene / "target"), fs::directory_iterator());
    if (count != static_cast<std::ptrdiff_t>(names.size()) + 2) return "something else stands there";
    return bytesOf(scene / "target/bystander") == "data" && bytesOf(scene / "bystander") == "data"
               ? std::nullopt
               : Harm("a bystander was touched");
  });
}

}  // namespace
}  // namespace halvorn
