// Attacks by how the administrator's tool is started: arguments, environment, descriptors, signals, limits.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/support/OwnMounts.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

const std::string train = KT_TRAIN;

class StartAttacks : public AttackTest {
 protected:
  static std::string servedAsUsual() {
    return "class: 0\nnice: 0\ndisk: 0\nprocessors: " + std::to_string(std::thread::hardware_concurrency()) +
           "\nkilled first: 0\ntimer slack: 50000\nimitated: 0\n";
  }

  // The whole argument list as given, the program's own name included.
  static int runWithArgv(const std::vector<std::string>& argv) {
    std::vector<std::string> environment = AttackScene::pkexecEnvironment();
    std::vector<char*> words;
    for (const std::string& word : argv) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    std::vector<char*> entries;
    for (std::string& entry : environment) entries.push_back(entry.data());
    entries.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    ::posix_spawn_file_actions_init(&quiet);
    ::posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, train.c_str(), &quiet, nullptr, words.data(), entries.data());
    ::posix_spawn_file_actions_destroy(&quiet);
    if (error != 0) return -1;
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
};

TEST_F(StartAttacks, AWrongNumberOfArgumentsInstallsNothing) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    const std::string source = scene / "source/Nas.app";
    const std::string target = scene / "target/Nas.app";
    const std::vector<std::vector<std::string>> lists{{},
                                                      {train},
                                                      {train, source},
                                                      {train, source, target, scene / "source", "fifth"},
                                                      {train, source, target, "", ""}};
    for (const auto& list : lists) {
      const int status = runWithArgv(list);
      if (status <= 0) return std::to_string(list.size()) + " entries: status " + std::to_string(status);
      if (!fs::is_empty(scene / "target")) return std::to_string(list.size()) + " entries install something";
    }
    return std::nullopt;
  });
}

TEST_F(StartAttacks, PathsThatMeanDifferentThingsToDifferentPeopleInstallNothing) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addProduct(scene / "target/Old.app", AttackScene::root);
    const std::string before = pictureOf(scene / "target");
    const std::string source = scene / "source/Nas.app";
    const std::vector<std::string> bad{"",
                                       "Nas.app",
                                       "./Nas.app",
                                       "../Nas.app",
                                       "-rf",
                                       "--help",
                                       "~",
                                       "~/Nas.app",
                                       scene / "target/../target/Old.app",
                                       scene / "target/..",
                                       "/",
                                       "//",
                                       ".",
                                       "..",
                                       scene / ("target/" + std::string(5000, 'x')),
                                       scene / ("target/" + std::string(5000, '/') + "../x")};
    for (const std::string& path : bad) {
      const std::string shown = path.substr(0, 60);
      if (runWithArgv({train, source, path}) <= 0) return "destination '" + shown + "': status";
      if (pictureOf(scene / "target") != before) return "destination '" + shown + "'";
      if (path.starts_with('/')) continue;
      if (runWithArgv({train, path, scene / "target/New.app"}) <= 0) return "source '" + shown + "': status";
      if (runWithArgv({train, source, scene / "target/New.app", path}) <= 0)
        return "wrapper '" + shown + "': status";
      if (pictureOf(scene / "target") != before) return "source or wrapper '" + shown + "'";
    }
    return std::nullopt;
  });
}

TEST_F(StartAttacks, UnusualPathsThatMeanOneThingAreInstalled) {
  expectHarmless([](AttackScene& scene) -> Harm {
    const std::vector<std::string> names{"-rf.app", "\xff\xfe.app", "a\nb.app",
                                         "%@.app",  " .app",        "N\xcc\x88s.app"};
    for (const std::string& name : names) {
      const std::string source = scene / ("source/" + name);
      const std::string target = scene / ("target/" + name);
      scene.addProduct(source);
      scene.addFolder(scene / "target");
      if (runWithArgv({train, source + "//", target + "///"}) != 0) return "not installed: " + name;
      if (bytesOf(target + "/Contents/Info.plist") != "<plist/>") return "not complete: " + name;
      fs::remove_all(target);
    }
    // 5,000 bytes that are mostly slashes name a folder after all.
    const std::string slashes(4000, '/');
    if (runWithArgv({train, scene / ("source" + std::string(1, '/') + names[0]),
                     scene / "target" + slashes + "N.app"}) == 0) {
      if (bytesOf(scene / "target/N.app/Contents/Info.plist") != "<plist/>")
        return "not complete behind slashes";
    }
    return std::nullopt;
  });
}

TEST_F(StartAttacks, APersonWhoIsNobodyGetsNothing) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    for (const char* id : {"", "abc", "-1", "64101x", " 64101", "0x0", "4294967295", "4294967296",
                           "99999999999999999999", "64199"}) {
      const auto run =
          scene.run({scene / "source/Nas.app", scene / "target/Nas.app"}, {std::string("PKEXEC_UID=") + id});
      if (run.status <= 0) return std::string(id) + ": status " + std::to_string(run.status);
      if (!fs::is_empty(scene / "target")) return std::string(id) + ": installs";
    }
    return std::nullopt;
  });
}

TEST_F(StartAttacks, NorDoesOneWhoComesThroughSudo) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    for (const char* id : {"", "abc", "64101x", "4294967295", "64199"}) {
      const auto run = scene.run({scene / "source/Nas.app", scene / "target/Nas.app"},
                                 {std::string("SUDO_UID=") + id, "PKEXEC_UID=0"});
      if (run.status <= 0 || !fs::is_empty(scene / "target")) return std::string(id) + ": installs";
    }
    return std::nullopt;
  });
}

// A mistake of whoever packed it must not make it a tool for everybody.
TEST_F(StartAttacks, ACopyWithSetUserIdRefusesToWork) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    for (const mode_t bits : {mode_t{04755}, mode_t{06755}}) {
      const std::string copy = scene / "tool";
      fs::copy_file(scene.tool().path, copy, fs::copy_options::overwrite_existing);
      ::chmod(copy.c_str(), bits);
      const auto result =
          runCommand(scene.world().asPerson({copy, scene / "source/Nas.app", scene / "target/Nas.app"}),
                     {.environment = scene.world().personsEnvironment()});
      if (result.status == 0 || !fs::is_empty(scene / "target")) return "installs";
    }
    return std::nullopt;
  });
}

TEST_F(StartAttacks, ACopyWithFileCapabilitiesRefusesToWork) {
  if (!programExists("setcap")) GTEST_SKIP() << "no setcap";
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "target");
    const std::string copy = scene / "tool";
    fs::copy_file(scene.tool().path, copy);
    if (runCommand({"setcap", "cap_dac_override,cap_chown+ep", copy}).status != 0) return "cannot";
    const auto result =
        runCommand(scene.world().asPerson({copy, scene / "source/Nas.app", scene / "target/Nas.app"}),
                   {.environment = scene.world().personsEnvironment()});
    return result.status == 0 || !fs::is_empty(scene / "target") ? Harm("installs") : std::nullopt;
  });
}

// A log line would be written into whatever file got the number of a missing stream.
TEST_F(StartAttacks, MissingStandardStreamsWriteNoLogIntoTheProduct) {
  expectHarmless([](AttackScene& scene) -> Harm {
    scene.addFile(scene / "wrapper/a", "bytes", 0644, AttackScene::person);
    scene.addFile(scene / "wrapper/b", "secret", 0600);  // its copy fails and is logged
    scene.addFolder(scene / "target");
    const auto run = runCommand(
        {"sh", "-c", "exec \"$@\" 0<&- 1>&- 2>&-", "sh", train, scene / "wrapper", scene / "target/x"},
        {.environment = AttackScene::pkexecEnvironment()});
    if (run.status != 2) return "exits with " + std::to_string(run.status);
    return findBelow(scene / "target", [](const std::string& path) {
      return bytesOf(path).find("ERROR") != std::string::npos;
    });
  });
}

TEST_F(StartAttacks, InheritedLimitsAndSignalsDoNotStopIt) {
  expectDefended([](AttackScene& scene) -> Harm {
    scene.addProduct(scene / "source/Nas.app");
    scene.addFile(scene / "source/Nas.app/large", std::string(300'000, 'x'), 0644, AttackScene::person);
    scene.addFolder(scene / "target");
    // Files of 64 kB, eight descriptors, an alarm on its way, and every signal
    // that can be, blocked or ignored.
    const std::string hostile =
        "ulimit -S -f 128; ulimit -S -n 8; umask 0; trap '' HUP INT TERM USR1 CHLD PIPE; exec \"$@\"";
    const auto run = runCommand(
        {"sh", "-c", hostile, "sh", scene.tool().path, scene / "source/Nas.app", scene / "target/Nas.app"},
        {.environment = AttackScene::pkexecEnvironment()});
    if (run.status != 0) return "exits with " + std::to_string(run.status) + ": " + run.output;
    return bytesOf(scene / "target/Nas.app/large").size() == 300'000 ? std::nullopt : Harm("not complete");
  });
}

// Everything that a hostile start can leave behind, reported by a program that
// secures itself as the tool does.
TEST_F(StartAttacks, NothingInheritedIsLeft) {
  const std::string probe = KT_BINARY_DIR "/tests/kt_secured_probe";
  const std::string hostile =
      "exec 5</etc/passwd 9>/dev/null; umask 0; cd /usr; trap '' HUP INT TERM USR1 CHLD; exec \"$@\"";
  std::vector<std::string> environment = AttackScene::pkexecEnvironment();
  for (const char* entry :
       {"LD_PRELOAD_NOT=x", "QT_PLUGIN_PATH=/tmp", "TMPDIR=/tmp/x", "XDG_DATA_HOME=/tmp/x", "LANG=de_DE",
        "TZ=:/etc/passwd", "IFS=x", "GCONV_PATH=/tmp", "MALLOC_TRACE=/tmp/x"}) {
    environment.emplace_back(entry);
  }
  const auto result = runCommand({"sh", "-c", hostile, "sh", probe}, {.environment = environment});
  EXPECT_EQ(result.output,
            "start: privileged\n"
            "environment: PATH=/usr/sbin:/usr/bin:/sbin:/bin\n"
            "environment: PKEXEC_UID=64101\n"
            "folder: /\n"
            "mask: 77\n"
            "descriptors: 0 1 2\n"
            "SigBlk: 0000000000000000\n"
            "SigIgn: 0000000001001000\n"  // pipe and file size
            "CapInh: 0000000000000000\n"
            "CapPrm: 00000000000000cb\n"
            "CapEff: 00000000000000cb\n"
            "CapBnd: 0000000000000000\n"
            "CapAmb: 0000000000000000\n"
            "NoNewPrivs: 1\n"
            "dumpable: 0\n"
            "core: 0\n"
            "own session: yes\n" +
                servedAsUsual());
}

// Somebody may want the tool to be slow, or to be ended while it works.
TEST_F(StartAttacks, HowItIsServedIsNotLeftToWhoeverAsked) {
  if (!canMakeQuickAgain()) GTEST_SKIP() << "nobody in a user name space makes a program quicker";
  const std::string hostile =
      "echo 900 >/proc/self/oom_score_adj; exec setarch --uname-2.6 -R chrt --idle 0 nice -n 19 "
      "taskset -c 0 python3 -c 'import ctypes, os, sys; ctypes.CDLL(None).prctl(29, 400000000, 0, 0, 0); "
      "ctypes.CDLL(None).syscall(int(sys.argv[1]), 1, 0, 3 << 13); os.execv(sys.argv[2], sys.argv[2:])' "
      "\"$@\"";
  const std::string probe = KT_BINARY_DIR "/tests/kt_secured_probe";
  const std::vector<std::string> command{"sh", "-c", hostile, "sh", std::to_string(SYS_ioprio_set), probe};
  const auto asked = runCommand(command, {.environment = AttackScene::pkexecEnvironment()});
  EXPECT_TRUE(asked.output.ends_with("\nown session: yes\n" + servedAsUsual())) << asked.output;
  // Root's own arrangement is root's own decision; and here it can be seen that the start was hostile.
  const auto ofItself = runCommand(command, {.environment = {"PATH=/usr/bin:/bin"}});
  EXPECT_TRUE(
      ofItself.output.ends_with("\nclass: 5\nnice: 19\ndisk: 24576\nprocessors: 1\nkilled first: 900\n"
                                "timer slack: 400000000\nimitated: 60000\n"))
      << ofItself.output;
}

TEST_F(StartAttacks, OfTheEnvironmentOnlyWhatTellsForWhomTheToolWorksIsLeft) {
  const std::string path = "environment: PATH=/usr/sbin:/usr/bin:/sbin:/bin\n";
  const struct {
    std::vector<std::string> given;
    std::string left;
    const char* why;
  } cases[] = {
      {{"SUDO_UID=64101", "SUDO_USER=x", "HOME=/x", "XDG_DATA_HOME=/x"},
       path + "environment: SUDO_UID=64101\n",
       "the folders are those of whoever asked"},
      {{"PKEXEC_UID=0", "SUDO_UID=64101", "HOME=/x"},
       path + "environment: PKEXEC_UID=0\nenvironment: SUDO_UID=64101\n",
       "one within the other"},
      {{"HOME=/x", "XDG_DATA_HOME=/y", "USER=root"},
       "environment: HOME=/x\n" + path + "environment: XDG_DATA_HOME=/y\n",
       "nobody else asked"},
  };
  for (const auto& [given, left, why] : cases) {
    const auto result = runCommand({KT_BINARY_DIR "/tests/kt_secured_probe"}, {.environment = given});
    EXPECT_TRUE(result.output.starts_with("start: privileged\n" + left + "folder: /\n")) << why << ":\n"
                                                                                         << result.output;
  }
}

TEST_F(StartAttacks, AnOrdinaryPersonsProcessIsLeftAsItIs) {
  const auto result = runCommand(world_->asPerson({KT_BINARY_DIR "/tests/kt_secured_probe"}),
                                 {.environment = {"HOME=/x", "LANG=C"}});
  EXPECT_TRUE(result.output.starts_with("start: ordinary\nenvironment: HOME=/x\nenvironment: LANG=C\n"))
      << result.output;
}

}  // namespace
}  // namespace halvorn
