// Attacks with what is mounted in two places, and with an old copy that somebody else put where it is.
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/rights/adapter/attacks/Racer.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// Shows the one item at the other place, too, until it is dropped. Whatever is moved meanwhile takes its
// mounts along, so that the place has to be named anew at the end.
class SecondPlace {
 public:
  SecondPlace(const std::string& item, std::string place) : place_(std::move(place)) {
    EXPECT_EQ(::mount(item.c_str(), place_.c_str(), "none", MS_BIND, nullptr), 0) << place_;
  }
  ~SecondPlace() { EXPECT_EQ(::umount2(place_.c_str(), MNT_DETACH), 0) << place_; }
  SecondPlace(const SecondPlace&) = delete;
  SecondPlace& operator=(const SecondPlace&) = delete;
  void isNow(const std::string& place) { place_ = place; }

 private:
  std::string place_;
};

class MountAttacks : public AttackTest {
 protected:
  static std::string trashed(AttackScene& scene, const std::string& name) {
    return scene.world().homeFolder() + "/.local/share/Trash/files/" + name;
  }
  static void prepare(AttackScene& scene) {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
  }
  static bool isInstalled(AttackScene& scene) {
    return scene.install(scene / "source/Nas.app", scene / "target/Nas.app").status == 0;
  }
  static Harm givenBelow(const std::string& path) {
    return findBelow(path,
                     [](const std::string& item) { return factsOf(item)->st_uid != AttackScene::root; });
  }
};

TEST_F(MountAttacks, AFolderOfTheOldCopyThatIsMountedElsewhereTooKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFolder(scene / "service");
    const SecondPlace second(scene / "target/Nas.app/Contents", scene / "service");
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(scene / "service");
  });
}

TEST_F(MountAttacks, SoDoesTheWholeOldCopy) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFolder(scene / "service");
    const SecondPlace second(scene / "target/Nas.app", scene / "service");
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(scene / "service");
  });
}

TEST_F(MountAttacks, SoDoesOneFile) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFile(scene / "service", "");
    const SecondPlace second(scene / "target/Nas.app/Contents/Info.plist", scene / "service");
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(scene / "service");
  });
}

TEST_F(MountAttacks, SoDoesAFileWithAFurtherNameInSuchAFolder) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFolder(scene / "service");
    scene.addFolder(scene / "target/Nas.app/Contents/Service");
    fs::create_hard_link(scene / "target/Nas.app/Contents/Info.plist",
                         scene / "target/Nas.app/Contents/Service/Info.plist");
    const SecondPlace second(scene / "target/Nas.app/Contents/Service", scene / "service");
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(scene / "service");
  });
}

// Where a mount cannot be looked at, nobody can say what it shows.
TEST_F(MountAttacks, SoDoesEverythingWhereAMountIsHiddenBelowAnother) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFolder(scene / "service");
    const SecondPlace second(scene / "target/Nas.app/Contents", scene / "service");
    const SecondPlace above(scene / "source", scene / "service");
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(trashed(scene, "Nas.app"));
  });
}

TEST_F(MountAttacks, AFolderThatIsMountedInTheOldCopyKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFile(scene / "victim/data", "data");
    scene.addFolder(scene / "target/Nas.app/Contents/extra");
    SecondPlace second(scene / "victim", scene / "target/Nas.app/Contents/extra");
    const bool installs = isInstalled(scene);
    if (factsOf(trashed(scene, "Nas.app"))) second.isNow(trashed(scene, "Nas.app/Contents/extra"));
    return installs ? givenBelow(scene / "victim") : "does not install";
  });
}

TEST_F(MountAttacks, AFileThatIsMountedInTheOldCopyKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFile(scene / "victim", "data");
    scene.addFile(scene / "target/Nas.app/Contents/extra", "");
    SecondPlace second(scene / "victim", scene / "target/Nas.app/Contents/extra");
    const bool installs = isInstalled(scene);
    if (factsOf(trashed(scene, "Nas.app"))) second.isNow(trashed(scene, "Nas.app/Contents/extra"));
    return installs ? givenBelow(scene / "victim") : "does not install";
  });
}

TEST_F(MountAttacks, SoDoesOneOfAnotherFileSystem) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addSmallDisk(scene / "disk", "1m");
    scene.addFile(scene / "disk/victim", "data");
    scene.addFile(scene / "target/Nas.app/Contents/extra", "");
    SecondPlace second(scene / "disk/victim", scene / "target/Nas.app/Contents/extra");
    const bool installs = isInstalled(scene);
    if (factsOf(trashed(scene, "Nas.app"))) second.isNow(trashed(scene, "Nas.app/Contents/extra"));
    return installs ? givenBelow(scene / "disk/victim") : "does not install";
  });
}

TEST_F(MountAttacks, WhatIsMountedWhereAWrapperItemGoesIsLeftAlone) {
  expectDefended([](AttackScene& scene) -> Harm {
    prepare(scene);
    scene.addFile(scene / "wrapper/Extras/inner/data", "new", 0644, AttackScene::person);
    scene.addFile(scene / "victim/data", "data");
    scene.addFolder(scene / "target/Extras/inner");
    const SecondPlace second(scene / "victim", scene / "target/Extras/inner");
    const std::string before = pictureOf(scene / "victim");
    (void)scene.install(scene / "source/Nas.app", scene / "target/Nas.app", scene / "wrapper");
    return pictureOf(scene / "victim") == before ? std::nullopt : Harm(pictureOf(scene / "victim"));
  });
}

// With nothing mounted twice, all of it is the person's: what is refused above is refused for its reason.
TEST_F(MountAttacks, AnOrdinaryOldCopyIsGiven) {
  expectHarmless([](AttackScene& scene) -> Harm {
    prepare(scene);
    if (!isInstalled(scene)) return "does not install";
    return findBelow(trashed(scene, "Nas.app"),
                     [](const std::string& item) { return factsOf(item)->st_uid != AttackScene::person; });
  });
}

// Whoever may write the folder may have given any folder of root's in there the old copy's name.
TEST_F(MountAttacks, AnOldCopyInAFolderOfThePersonsKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "target", 0755, AttackScene::person);
    prepare(scene);
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(trashed(scene, "Nas.app"));
  });
}

TEST_F(MountAttacks, AnOldCopyInAFolderThatEverybodyMayWriteKeepsItsOwner) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "target", 01777);
    prepare(scene);
    if (!isInstalled(scene)) return "does not install";
    return givenBelow(trashed(scene, "Nas.app"));
  });
}

// The old copy is exchanged for a folder of root's between the two times that the tool names it.
TEST_F(MountAttacks, AFolderOfRootsThatTakesTheOldCopysPlaceKeepsItsOwner) {
  if (::access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
  expectHarmless([](AttackScene& scene) -> Harm {
    constexpr int runs = 12;
    scene.addFolder(scene / "arena", 0755, AttackScene::person);
    scene.addFolder(scene / "source", 0755, AttackScene::person);
    scene.addProduct(scene / "source/Nas.app");
    long swaps = 0;
    for (int run = 1; run <= runs; ++run) {
      for (const char* name : {"arena/Nas.app", "arena/aside"}) fs::remove_all(scene / name);
      scene.addProduct(scene / "arena/Nas.app");
      scene.addProduct(scene / "arena/aside", AttackScene::root);
      {
        const Racer racer({{scene / "arena/Nas.app", scene / "arena/aside"}});
        std::vector<std::string> words{
            "/usr/bin/strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=renameat2:delay_enter=3000"};
        for (const std::string& entry : AttackScene::pkexecEnvironment())
          words.insert(words.end(), {"-E", entry});
        words.insert(words.end(), {KT_TRAIN, scene / "source/Nas.app", scene / "arena/Nas.app"});
        if (runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}}, 20).status == -1000) return "hangs";
        swaps += racer.swaps();
      }
      // All that the person owns has been the person's before.
      const auto isTwiceThePersons = [&] {
        int count = 0;
        for (const std::string& path :
             {scene / "arena/Nas.app", scene / "arena/aside", trashed(scene, "Nas.app")}) {
          if (const auto facts = factsOf(path)) count += facts->st_uid == AttackScene::person ? 1 : 0;
        }
        return count > 1;
      };
      if (isTwiceThePersons()) return "given away in run " + std::to_string(run);
      fs::remove_all(scene.world().homeFolder() + "/.local");
    }
    EXPECT_GT(swaps, runs);
    return std::nullopt;
  });
}

}  // namespace
}  // namespace halvorn
