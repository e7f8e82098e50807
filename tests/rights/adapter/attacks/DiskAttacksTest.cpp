// What a disk does to the administrator's tool, and what is done to a file while it is copied.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/support/PrivateMedium.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class DiskAttacks : public AttackTest {};

bool says(const AttackScene::Run& run, const std::string& line) {
  return run.output.find(line) != std::string::npos;
}

TEST_F(DiskAttacks, AFullDiskFailsAndSaysSo) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/large", std::string(400'000, 'x'), 0644, AttackScene::person);
    scene.addSmallDisk(scene / "target", "128k");
    scene.addFile(scene / "target/bystander", "data");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    if (!says(run, "ERROR -- Could not copy myself to " + scene / "target/Nas.app")) return run.output;
    return bytesOf(scene / "target/bystander") == "data" ? std::nullopt : Harm("a bystander was touched");
  });
}

TEST_F(DiskAttacks, ADiskWithoutRoomForMoreFilesFailsAndSaysSo) {
  expectHarmless([this](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    world_->mount("tmpfs", scene / "target", "tmpfs", 0, "mode=755,nr_inodes=4");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    return says(run, "ERROR -- Could not copy myself to ") ? std::nullopt : Harm(run.output);
  });
}

// A quota of the folder, which holds for everybody.
TEST_F(DiskAttacks, AQuotaFailsAndSaysSo) {
  const std::string target = "/opt/quota";
  const std::string image = world_->scratchFolder() + "/image";
  fs::create_directory(target);
  const std::string make = "truncate -s 128M " + image + " && mkfs.btrfs -q " + image + " && mount -o loop " +
                           image + " " + target + " && btrfs quota enable " + target +
                           " && btrfs qgroup limit 4M " + target;
  const auto made = runCommand({"sh", "-c", make});
  if (made.status != 0) GTEST_SKIP() << "no quotas: " << made.output;
  expectHarmless([&](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/large", std::string(8'000'000, 'x'), 0644, AttackScene::person);
    const auto run = scene.install(scene / "source/Nas.app", target + "/Nas.app");
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    return says(run, "ERROR -- Could not copy myself to ") ? std::nullopt : Harm(run.output);
  });
  ::umount2(target.c_str(), 0);
}

TEST_F(DiskAttacks, ADiskThatIsReadOnlyFromTheStartFailsAndKeepsTheOldCopy) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addSmallDisk(scene / "target", "1m");
    scene.addProduct(scene / "target/Nas.app", AttackScene::root);
    scene.world().mount("none", scene / "target", "none", MS_REMOUNT | MS_RDONLY, "");
    const std::string before = pictureOf(scene / "target");
    const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
    if (run.status != 1) return "exits with " + std::to_string(run.status);
    if (!says(run, "ERROR -- Could not trash '")) return run.output;
    return pictureOf(scene / "target") == before ? std::nullopt : Harm("changed");
  });
}

TEST_F(DiskAttacks, ADiskThatTurnsReadOnlyMidwayFailsAndSaysSo) {
  expectHarmless([](AttackScene& scene) -> Harm {
    constexpr int files = 12'000;
    scene.addProduct(scene / "source/Nas.app");
    for (int file = 0; file < files; ++file) {
      scene.addFile(scene / "source/Nas.app/" + std::to_string(file), "bytes", 0644, AttackScene::person);
    }
    scene.addSmallDisk(scene / "target", "64m");
    ChildProcess tool({scene.tool().path, scene / "source/Nas.app", scene / "target/Nas.app"},
                      {.environment = AttackScene::pkexecEnvironment()});
    if (!eventually([&] { return fs::exists(scene / "target/Nas.app"); })) return "does not start";
    // Possible only between two files: the tool is stopped, and goes on for a moment where it is at one.
    tool.sendSignal(SIGSTOP);
    while (::mount("none", (scene / "target").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
      if (!tool.isRunning()) return "too fast for this test";
      tool.sendSignal(SIGCONT);
      ::usleep(200);  // stopped at once, it would never come to the next file
      tool.sendSignal(SIGSTOP);
    }
    tool.sendSignal(SIGCONT);
    const auto status = tool.waitForEnd(20);
    if (status != 2) return "exits with " + std::to_string(status.value_or(-1000));
    if (tool.output().find("ERROR -- Could not copy myself to ") == std::string::npos) return tool.output();
    return std::nullopt;
  });
}

// What only the person can reach (FUSE): the file rights of the person alone do not reach it.
TEST_F(DiskAttacks, ASourceOnAMediumThatOnlyThePersonCanReadFailsAndDoesNotHang) {
  if (const auto reason = PrivateMedium::missing()) GTEST_SKIP() << *reason;
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addFolder(scene / "medium");
    scene.addFolder(scene / "target");
    const PrivateMedium medium(scene / "medium", AttackScene::person,
                               {{"Nas.app/Contents/Info.plist", "<plist/>"}});
    const auto run = scene.install(scene / "medium/Nas.app", scene / "target/Nas.app");
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    return says(run, "ERROR -- Could not copy myself to ") ? std::nullopt : Harm(run.output);
  });
}

// Its owner may always change it; what comes out is some mixture of his own bytes, and it comes out.
TEST_F(DiskAttacks, AFileThatChangesWhileItIsCopiedDoesNotKeepTheToolForever) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    const std::string file = scene / "source/Nas.app/file";
    scene.addFile(file, std::string(100'000, 'x'), 0644, AttackScene::person);
    scene.addFolder(scene / "target");
    const pid_t changer = ::fork();
    if (changer == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
      const std::string more(1 << 20, 'x');
      while (true) {
        for (int time = 0; time < 64; ++time) {
          if (::write(descriptor, more.data(), more.size()) < 0) break;
        }
        if (::ftruncate(descriptor, 100'000) != 0 || ::lseek(descriptor, 100'000, SEEK_SET) < 0) break;
      }
      ::_exit(0);
    }
    Harm harm;
    for (int time = 0; time < 8 && !harm; ++time) {
      const auto run = scene.install(scene / "source/Nas.app", scene / "target/Nas.app");
      const auto facts = factsOf(scene / "target/Nas.app/file");
      if (run.hangs()) harm = "does not end";
      if (run.status != 0 && run.status != 2) harm = "exits with " + std::to_string(run.status);
      if (facts && (facts->st_uid != 0 || (facts->st_mode & 0022) != 0)) harm = "belongs to somebody";
      fs::remove_all(scene / "target/Nas.app");
    }
    ::kill(changer, SIGKILL);
    ::waitpid(changer, nullptr, 0);
    return harm;
  });
}

}  // namespace
}  // namespace halvorn
