// Attacks by somebody who swaps names while the administrator's tool works. The racer is a process of the
// person who asked and swaps as fast as the system lets it; a round is one try of the operation under attack.
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>

#include "Platform/files/posix/PosixFileManager.h"
#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/rights/adapter/attacks/NaiveInstall.h"
#include "tests/rights/adapter/attacks/Racer.h"
#include "train/InstallRights.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr int kManyRounds = 100'000;
constexpr double kNaivePatience = 30;  // seconds
constexpr int kSomeRounds = 2'500;

// The operations under attack: the real ones with the rules of the tool, or the naive ones.
class Operations {
 public:
  explicit Operations(bool isNaive) : isNaive_(isNaive) {
    ::setenv("PKEXEC_UID", std::to_string(PolkitWorld::personId).c_str(), 1);
  }
  ~Operations() { ::unsetenv("PKEXEC_UID"); }
  Operations(const Operations&) = delete;
  Operations& operator=(const Operations&) = delete;

  // As one run of the tool would: nothing is held from the run before.
  void begin() {
    if (!rules_) rules_ = installRights()->files;
    rules_->pins = std::make_shared<FolderPins>();
    files_ = std::make_unique<PosixFileManager>(*rules_);
  }
  void copy(const std::string& from, const std::string& to) {
    (void)(isNaive_ ? NaiveInstall::copyItem(from, to) : !files_->copyItem(from, to));
  }
  void remove(const std::string& path) {
    (void)(isNaive_ ? NaiveInstall::removeItem(path) : !files_->removeItem(path));
  }

 private:
  bool isNaive_;
  std::optional<FileRules> rules_;
  std::unique_ptr<PosixFileManager> files_;
};

// Takes openat2 away from this process, as old kernels and some sandboxes do.
void forgetOpenat2() {
  sock_filter code[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{sizeof code / sizeof code[0], code};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    ::_exit(3);
  }
}

class RaceAttacks : public AttackTest {
 protected:
  // Prepares a scene, and answers what one round does and what to look at afterwards.
  struct Attack {
    std::function<void(AttackScene&)> prepare;
    std::string swapped;  // these two names in the scene
    std::string swappedWith;
    std::function<void(AttackScene&, Operations&)> round;
    std::function<bool(AttackScene&)> isHarmed;   // cheap: asked after each round
    std::function<void(AttackScene&)> tidy = {};  // before the next round
  };

  void race(int rounds, const Attack& attack) {
    expectDefended([&](AttackScene& scene) -> Harm {
      attack.prepare(scene);
      Operations operations(scene.tool().isNaive);
      const Racer racer({{scene / attack.swapped, scene / attack.swappedWith}});
      // The naive tool is tried until it is harmed; where the racer gets little of the
      // processor that takes its time.
      const double end = testSeconds() + kNaivePatience;
      for (int round = 1; scene.tool().isNaive ? testSeconds() < end : round <= rounds; ++round) {
        operations.begin();
        attack.round(scene, operations);
        if (attack.isHarmed(scene)) return "harmed in round " + std::to_string(round);
        if (attack.tidy) attack.tidy(scene);
      }
      if (!scene.tool().isNaive) report(rounds, racer.swaps());
      // A racer that stood still would have proved nothing.
      EXPECT_GT(racer.swaps(), rounds / 100);
      return std::nullopt;
    });
  }

  static void report(int rounds, long swaps) {
    RecordProperty("rounds", rounds);
    RecordProperty("swaps", std::to_string(swaps));
  }

  // The parent of what is written is now a folder, now a link into the victim.
  static Attack parentSwapped() {
    return {.prepare =
                [](AttackScene& scene) {
                  scene.addFile(scene / "source", "bytes", 0644, AttackScene::person);
                  scene.addFile(scene / "victim/sentinel", "data");
                  scene.addFolder(scene / "arena/folder", 0755, AttackScene::person);
                  scene.addLink(scene / "arena/link", scene / "victim", AttackScene::person);
                },
            .swapped = "arena/folder",
            .swappedWith = "arena/link",
            .round =
                [step = 0](AttackScene& scene, Operations& operations) mutable {
                  switch (step++ % 3) {
                    case 0:
                      return operations.copy(scene / "source", scene / "arena/folder/copy");
                    case 1:
                      return operations.remove(scene / "arena/folder/copy");
                    default:
                      return operations.remove(scene / "arena/folder/sentinel");
                  }
                },
            .isHarmed =
                [](AttackScene& scene) {
                  return ::access((scene / "victim/copy").c_str(), F_OK) == 0 ||
                         ::access((scene / "victim/sentinel").c_str(), F_OK) != 0;
                }};
  }
};

TEST_F(RaceAttacks, TheParentSwappedForALinkAHundredThousandTimes) { race(kManyRounds, parentSwapped()); }

TEST_F(RaceAttacks, TheParentSwappedForALinkOnAKernelWithoutOpenat2) {
  // In a process of its own: what is forgotten stays forgotten.
  const pid_t process = ::fork();
  if (process == 0) {
    forgetOpenat2();
    race(kSomeRounds, parentSwapped());
    ::_exit(HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
}

// The folder that the tool has just made, in a folder of the person's.
TEST_F(RaceAttacks, TheNewFolderSwappedForALinkWhileItIsFilled) {
  race(kSomeRounds,
       {.prepare =
            [](AttackScene& scene) {
              scene.addFile(scene / "source/Nas.app/file", "bytes", 0644, AttackScene::person);
              scene.addFolder(scene / "victim");
              scene.addFolder(scene / "arena", 0755, AttackScene::person);
              scene.addLink(scene / "arena/aside", scene / "victim", AttackScene::person);
            },
        .swapped = "arena/Nas.app",
        .swappedWith = "arena/aside",
        .round =
            [](AttackScene& scene, Operations& operations) {
              operations.copy(scene / "source/Nas.app", scene / "arena/Nas.app");
            },
        .isHarmed = [](AttackScene& scene) { return ::access((scene / "victim/file").c_str(), F_OK) == 0; },
        .tidy =
            [](AttackScene& scene) {
              // Whichever is which by now.
              std::error_code ignored;
              fs::remove_all(scene / "arena/Nas.app", ignored);
              fs::remove_all(scene / "arena/aside", ignored);
              fs::create_symlink(scene / "victim", scene / "arena/aside", ignored);
            }});
}

// The second name of a file is made from the first, which must not be looked up
// through what was put there meanwhile.
TEST_F(RaceAttacks, TheNewFolderSwappedForALinkWhileHardLinksAreMade) {
  race(kSomeRounds, {.prepare =
                         [](AttackScene& scene) {
                           scene.addFile(scene / "source/Nas.app/a/file", "bytes", 0644, AttackScene::person);
                           scene.addFolder(scene / "source/Nas.app/b", 0755, AttackScene::person);
                           fs::create_hard_link(scene / "source/Nas.app/a/file",
                                                scene / "source/Nas.app/b/file");
                           scene.addFile(scene / "victim/a/file", "data", 0600);
                           scene.addFile(scene / "victim/b/file", "data", 0600);
                           scene.addFolder(scene / "arena", 0755, AttackScene::person);
                           scene.addLink(scene / "arena/aside", scene / "victim", AttackScene::person);
                         },
                     .swapped = "arena/Nas.app",
                     .swappedWith = "arena/aside",
                     .round =
                         [](AttackScene& scene, Operations& operations) {
                           operations.copy(scene / "source/Nas.app", scene / "arena/Nas.app");
                         },
                     .isHarmed =
                         [](AttackScene& scene) {
                           for (const char* name : {"victim/a/file", "victim/b/file"}) {
                             const auto facts = factsOf(scene / name);
                             if (!facts || facts->st_nlink != 1 || facts->st_size != 4) return true;
                           }
                           return false;
                         },
                     .tidy =
                         [](AttackScene& scene) {
                           std::error_code ignored;
                           fs::remove_all(scene / "arena/Nas.app", ignored);
                           fs::remove_all(scene / "arena/aside", ignored);
                           fs::create_symlink(scene / "victim", scene / "arena/aside", ignored);
                         }});
}

TEST_F(RaceAttacks, AFolderSwappedForALinkWhileItsTreeIsRemoved) {
  const auto fill = [](AttackScene& scene) {
    scene.addFile(scene / "arena/Extras/folder/file", "bytes", 0644, AttackScene::person);
    scene.addLink(scene / "arena/Extras/link", scene / "victim", AttackScene::person);
  };
  race(
      kSomeRounds,
      {.prepare =
           [fill](AttackScene& scene) {
             scene.addFile(scene / "victim/file", "data");
             scene.addFolder(scene / "arena", 0755, AttackScene::person);
             fill(scene);
           },
       .swapped = "arena/Extras/folder",
       .swappedWith = "arena/Extras/link",
       .round = [](AttackScene& scene, Operations& operations) { operations.remove(scene / "arena/Extras"); },
       .isHarmed = [](AttackScene& scene) { return ::access((scene / "victim/file").c_str(), F_OK) != 0; },
       .tidy =
           [fill](AttackScene& scene) {
             // The racer swaps still.
             std::error_code ignored;
             while (fs::exists(scene / "arena/Extras", ignored)) {
               fs::remove_all(scene / "arena/Extras", ignored);
             }
             fill(scene);
           }});
}

TEST_F(RaceAttacks, AFileOfTheSourceSwappedForALinkToASecret) {
  race(
      kSomeRounds,
      {.prepare =
           [](AttackScene& scene) {
             scene.addFile(scene / "source/file", "public", 0644, AttackScene::person);
             scene.addFile(scene / "secret", "secret", 0600);
             scene.addLink(scene / "source/link", scene / "secret", AttackScene::person);
             scene.addFolder(scene / "target");
           },
       .swapped = "source/file",
       .swappedWith = "source/link",
       .round = [](AttackScene& scene,
                   Operations& operations) { operations.copy(scene / "source/file", scene / "target/copy"); },
       .isHarmed = [](AttackScene& scene) { return bytesOf(scene / "target/copy") == "secret"; },
       .tidy = [](AttackScene& scene) { ::unlink((scene / "target/copy").c_str()); }});
}

TEST_F(RaceAttacks, AFolderOfTheSourceSwappedForALinkIntoAPrivateFolder) {
  race(kSomeRounds,
       {.prepare =
            [](AttackScene& scene) {
              scene.addFile(scene / "source/folder/file", "public", 0644, AttackScene::person);
              scene.addFolder(scene / "private", 0700);
              scene.addFile(scene / "private/file", "secret");
              scene.addLink(scene / "source/link", scene / "private", AttackScene::person);
              scene.addFolder(scene / "target");
            },
        .swapped = "source/folder",
        .swappedWith = "source/link",
        .round =
            [](AttackScene& scene, Operations& operations) {
              operations.copy(scene / "source/folder/file", scene / "target/copy");
            },
        .isHarmed = [](AttackScene& scene) { return bytesOf(scene / "target/copy") == "secret"; },
        .tidy = [](AttackScene& scene) { ::unlink((scene / "target/copy").c_str()); }});
}

// The tool as it is run, with all its steps.
TEST_F(RaceAttacks, TheParentSwappedForALinkWhileTheToolRuns) {
  constexpr int runs = 30;
  expectDefended([&](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "wrapper/Extras/file", "bytes", 0644, AttackScene::person);
    scene.addFolder(scene / "victim/Nas.app");
    scene.addFile(scene / "victim/Extras/data", "data");
    scene.addFolder(scene / "arena/folder", 0755, AttackScene::person);
    scene.addLink(scene / "arena/link", scene / "victim", AttackScene::person);
    const std::string before = pictureOf(scene / "victim");
    const Racer racer({{scene / "arena/folder", scene / "arena/link"}});
    for (int run = 1; run <= (scene.tool().isNaive ? 100 * runs : runs); ++run) {
      (void)scene.install(scene / "source/Nas.app", scene / "arena/folder/Nas.app", scene / "wrapper");
      if (pictureOf(scene / "victim") != before) return "harmed in run " + std::to_string(run);
    }
    EXPECT_GT(racer.swaps(), runs);
    return std::nullopt;
  });
}

// What was held first stays what is meant, although another folder has its name now.
TEST_F(RaceAttacks, AFolderThatWasReachedOnceIsHeldWhateverTakesItsName) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addFile(scene / "source", "bytes", 0644, AttackScene::person);
    scene.addFolder(scene / "arena/folder");
    scene.addFolder(scene / "arena/other");
    Operations operations(false);
    operations.begin();
    operations.copy(scene / "source", scene / "arena/folder/first");
    fs::rename(scene / "arena/folder", scene / "arena/moved");
    fs::rename(scene / "arena/other", scene / "arena/folder");
    operations.copy(scene / "source", scene / "arena/folder/second");
    if (bytesOf(scene / "arena/moved/second") != "bytes") return "not in the folder that was meant";
    return fs::is_empty(scene / "arena/folder") ? std::nullopt : Harm("in the other folder");
  });
}

}  // namespace
}  // namespace halvorn
