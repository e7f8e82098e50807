// Attacks by somebody who exchanges what the administrator's tool has just made for something of
// root's. The tool's calls before or after which that would help are slowed down, so that a few
// runs do what otherwise takes thousands.
#include <fcntl.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>

#include "tests/rights/adapter/attacks/AttackScene.h"
#include "tests/rights/adapter/attacks/Racer.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

using Maker = std::function<void(const std::string& path)>;

void makePipe(const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0) << path; }
void makeSocket(const std::string& path) { ASSERT_EQ(::mknod(path.c_str(), S_IFSOCK | 0644, 0), 0) << path; }
void makeLink(const std::string& path) { ASSERT_EQ(::symlink("nowhere", path.c_str()), 0) << path; }
void makeFile(const std::string& path) { ASSERT_EQ(::mknod(path.c_str(), S_IFREG | 0600, 0), 0) << path; }
void makePrivatePipe(const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0) << path; }

void makeFolder(const std::string& path) { ASSERT_EQ(::mkdir(path.c_str(), 0755), 0) << path; }
void makePrivateFolder(const std::string& path) { ASSERT_EQ(::mkdir(path.c_str(), 0700), 0) << path; }

struct Exchange {
  Maker item;    // what the wrapper holds, and so what the tool makes
  Maker secret;  // what root keeps for itself
  // The person puts a link to the secret in the item's place; or the secret itself, when
  // it stands in the person's folder.
  bool byLink = true;
  std::vector<std::string> delays;  // of the tool's calls, as strace has them
};

// Rights, owners and times, but not where it stands.
std::string stateOf(const struct stat& facts) {
  std::string state;
  for (const long long part :
       {static_cast<long long>(facts.st_mode), static_cast<long long>(facts.st_uid),
        static_cast<long long>(facts.st_gid), static_cast<long long>(facts.st_nlink),
        static_cast<long long>(facts.st_mtim.tv_sec), static_cast<long long>(facts.st_mtim.tv_nsec)}) {
    state += std::to_string(part) + " ";
  }
  return state;
}

bool isOlderThanASecond(const struct stat& facts) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec > facts.st_mtim.tv_sec + 1;
}

class ExchangeAttacks : public AttackTest {
 protected:
  static constexpr int runs = 12;

  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the leak check of a sanitized tool cannot run below strace";
#endif
    if (::access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
    AttackTest::SetUp();
  }

  void expectWithstood(const Exchange& exchange) {
    expectHarmless([&](AttackScene& scene) { return carryOut(scene, exchange); });
  }

  // Somebody else may write where the person's Trash has to be made; the person may not.
  static Harm exchangeTheTrash(AttackScene& scene) {
    constexpr uid_t other = PolkitWorld::administratorId;
    scene.addSmallDisk(scene / "arena", "4m");
    EXPECT_EQ(::chown((scene / "arena").c_str(), other, other), 0);
    scene.addFolder(scene / "wrapper");
    scene.addProduct(scene / "source/Nas.app");
    makePrivateFolder(scene / "arena/aside");
    const auto before = *factsOf(scene / "arena/aside");
    EXPECT_TRUE(eventually([&] { return isOlderThanASecond(before); }));
    const std::string trash = scene / ("arena/.Trash-" + std::to_string(AttackScene::person));
    long swaps = 0;
    for (int run = 1; run <= runs; ++run) {
      fs::remove_all(scene / "arena/Nas.app");
      scene.addProduct(scene / "arena/Nas.app", AttackScene::root);
      {
        const Racer racer({{trash, scene / "arena/aside"}}, other);
        if (installSlowly(scene, afterTheMaking).hangs()) return "hangs";
        swaps += racer.swaps();
      }
      const auto facts = factsOf(scene / "arena/aside");
      const bool isAside = facts && facts->st_ino == before.st_ino;
      if (stateOf(isAside ? *facts : factsOf(trash).value_or(before)) != stateOf(before))
        return "given away in run " + std::to_string(run);
      if (!isAside) fs::rename(trash, scene / "arena/kept");
      fs::remove_all(isAside ? trash : scene / "arena/aside");
      if (!isAside) fs::rename(scene / "arena/kept", scene / "arena/aside");
    }
    EXPECT_GT(swaps, runs);
    return std::nullopt;
  }

  static inline const std::vector<std::string> afterTheMaking = {"mknodat,symlinkat,mkdirat:delay_exit=3000"};
  // By any call that could change it.
  static inline const std::vector<std::string> beforeTheFinish = {
      "chmod,fchmodat,chown,lchown,fchownat,utimensat,removexattr,lremovexattr,setxattr,lsetxattr:"
      "delay_enter=3000"};

 private:
  static Harm carryOut(AttackScene& scene, const Exchange& exchange) {
    scene.addFolder(scene / "wrapper", 0755, AttackScene::person);
    exchange.item(scene / "wrapper/item");
    constexpr timespec longAgo[] = {{.tv_sec = 1'000'000'000, .tv_nsec = 0},
                                    {.tv_sec = 1'000'000'000, .tv_nsec = 0}};
    EXPECT_EQ(::utimensat(AT_FDCWD, (scene / "wrapper/item").c_str(), longAgo, AT_SYMLINK_NOFOLLOW), 0);
    exchange.secret(scene / "secret");
    const auto before = *factsOf(scene / "secret");
    // What was born just now could be taken for what the tool has made just now.
    EXPECT_TRUE(eventually([&] { return isOlderThanASecond(before); }));
    long swaps = 0;
    for (int run = 1; run <= runs; ++run) {
      prepare(scene, exchange.byLink);
      {
        const Racer racer({{scene / "arena/item", scene / "arena/aside"}});
        if (installSlowly(scene, exchange.delays).hangs()) return "hangs";
        swaps += racer.swaps();
      }
      const auto secret = secretIn(scene, before.st_ino);
      if (!secret) return "lost in run " + std::to_string(run);
      if (stateOf(*factsOf(*secret)) != stateOf(before)) return "changed in run " + std::to_string(run);
      fs::rename(*secret, scene / "secret");
    }
    // A racer that stood still would have proved nothing.
    EXPECT_GT(swaps, runs);
    return std::nullopt;
  }

  static void prepare(AttackScene& scene, bool byLink) {
    for (const std::string& path : {scene / "arena", scene / "source"}) fs::remove_all(path);
    scene.addProduct(scene / "source/Nas.app");
    scene.addFolder(scene / "arena", 0755, AttackScene::person);
    if (byLink) {
      scene.addLink(scene / "arena/aside", scene / "secret", AttackScene::person);
    } else {
      fs::rename(scene / "secret", scene / "arena/aside");
    }
  }

  // Whichever name it has by now.
  static std::optional<std::string> secretIn(AttackScene& scene, ino_t number) {
    for (const char* name : {"secret", "arena/item", "arena/aside"}) {
      const auto facts = factsOf(scene / name);
      if (facts && facts->st_ino == number) return scene / name;
    }
    return std::nullopt;
  }

  static AttackScene::Run installSlowly(AttackScene& scene, const std::vector<std::string>& delays) {
    std::vector<std::string> words{"/usr/bin/strace", "-f", "-qq", "-o", "/dev/null"};
    for (const std::string& delay : delays) words.insert(words.end(), {"-e", "inject=" + delay});
    for (const std::string& entry : AttackScene::pkexecEnvironment())
      words.insert(words.end(), {"-E", entry});
    words.insert(words.end(),
                 {KT_TRAIN, scene / "source/Nas.app", scene / "arena/Nas.app", scene / "wrapper"});
    const CommandResult result = runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}}, 20);
    return {.status = result.status, .output = result.output};
  }
};

TEST_F(ExchangeAttacks, APipeExchangedForALinkAsSoonAsItIsMade) {
  expectWithstood({.item = makePipe, .secret = makeFile, .delays = afterTheMaking});
}

TEST_F(ExchangeAttacks, APipeExchangedForALinkBeforeItIsFinished) {
  expectWithstood({.item = makePipe, .secret = makeFile, .delays = beforeTheFinish});
}

TEST_F(ExchangeAttacks, ASocketExchangedForALinkAsSoonAsItIsMade) {
  expectWithstood({.item = makeSocket, .secret = makeFile, .delays = afterTheMaking});
}

TEST_F(ExchangeAttacks, ASocketExchangedForALinkBeforeItIsFinished) {
  expectWithstood({.item = makeSocket, .secret = makeFile, .delays = beforeTheFinish});
}

TEST_F(ExchangeAttacks, APipeExchangedForAnOlderOneOfRootsAsSoonAsItIsMade) {
  expectWithstood({.item = makePipe, .secret = makePrivatePipe, .byLink = false, .delays = afterTheMaking});
}

TEST_F(ExchangeAttacks, APipeExchangedForAnOlderOneOfRootsBeforeItIsFinished) {
  expectWithstood({.item = makePipe, .secret = makePrivatePipe, .byLink = false, .delays = beforeTheFinish});
}

TEST_F(ExchangeAttacks, ALinkExchangedForAFileOfRootsAsSoonAsItIsMade) {
  expectWithstood({.item = makeLink, .secret = makeFile, .byLink = false, .delays = afterTheMaking});
}

TEST_F(ExchangeAttacks, ALinkExchangedForAFileOfRootsBeforeItIsFinished) {
  expectWithstood({.item = makeLink, .secret = makeFile, .byLink = false, .delays = beforeTheFinish});
}

TEST_F(ExchangeAttacks, AFolderExchangedForAnOlderEmptyOneOfRootsAsSoonAsItIsMade) {
  expectWithstood(
      {.item = makeFolder, .secret = makePrivateFolder, .byLink = false, .delays = afterTheMaking});
}

TEST_F(ExchangeAttacks, ThePersonsNewTrashExchangedForAFolderOfRoots) {
  expectHarmless([](AttackScene& scene) { return exchangeTheTrash(scene); });
}

}  // namespace
}  // namespace halvorn
