// Whoever may write a folder may exchange what stands in it between any two calls of the administrator's tool.
// Instead of trying that at some moments, every call is asked for what makes it safe at all of them.
#include "tests/rights/adapter/attacks/Obligations.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <regex>

#include "tests/rights/adapter/attacks/TracedInstall.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

bool isOpenToOthers(const std::string& folder) {
  struct stat facts {};
  if (folder.starts_with("/proc")) return false;
  if (::lstat(folder.c_str(), &facts) != 0) return isOpenToOthers(fs::path(folder).parent_path());
  const bool isRoots = facts.st_uid == AttackScene::root;
  if (S_ISLNK(facts.st_mode)) return !isRoots || isOpenToOthers(fs::canonical(folder));
  return !isRoots || !S_ISDIR(facts.st_mode) || (facts.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

using Prepare = std::function<void(AttackScene& scene)>;

class Obligations : public TracedInstall {
 protected:
  // The calls of one installation; none when it failed.
  std::vector<Call> record(const std::string& target, const Prepare& prepare = {},
                           std::vector<std::string> options = {}) {
    options.push_back("-y");
    std::vector<Call> calls;
    expectHarmless([&](AttackScene& scene) -> Harm {
      if (prepare) prepare(scene);
      fill(scene, target);
      const Traced traced = install(scene, target, options);
      if (traced.status != 0) return "exits with " + std::to_string(traced.status);
      calls = traced.calls;
      return std::nullopt;
    });
    return calls;
  }
  void expectKept(const std::vector<Call>& calls, int atLeast) {
    const Judgement judgement = judge(calls, isOpenToOthers);
    for (const std::string& violation : judgement.violations) ADD_FAILURE() << violation;
    for (const auto& [kind, count] : judgement.obligations)
      std::cout << "  " << count << " x " << kind << "\n";
    std::cout << "  " << judgement.count() << " obligations in " << calls.size() << " calls\n";
    EXPECT_GE(judgement.count(), atLeast);
  }
  static void openTarget(AttackScene& scene) { scene.addFolder(scene / "target", 0755, AttackScene::person); }
};

TEST_F(Obligations, AreKeptInAFolderOfRoots) { expectKept(record("target"), 20); }

TEST_F(Obligations, AreKeptInAFolderOfThePersons) { expectKept(record("target", openTarget), 60); }

TEST_F(Obligations, AreKeptInAFolderThatEverybodyMayWrite) {
  expectKept(record("target", [](AttackScene& scene) { scene.addFolder(scene / "target", 01777); }), 60);
}

TEST_F(Obligations, AreKeptOnAnotherFileSystemOfThePersons) {
  expectKept(record("disk/target",
                    [](AttackScene& scene) {
                      scene.addSmallDisk(scene / "disk", "40m");
                      ASSERT_EQ(::chown((scene / "disk").c_str(), AttackScene::person, AttackScene::person),
                                0);
                    }),
             60);
}

TEST_F(Obligations, AreKeptOnAKernelWithoutOpenat2) {
  expectKept(record("target", openTarget, {"-e", "inject=openat2:error=ENOSYS"}), 60);
}

// Ten ways to do it wrong, each put into the record of an installation that does it right.
class BrokenObligations : public Obligations {
 protected:
  using Calls = std::vector<Call>;
  struct Seed {
    const char* name;
    std::function<bool(Calls& calls)> plant;  // false: there is no place for it
  };

  static Calls::iterator find(Calls& calls, const char* name, const std::string& arguments) {
    const std::regex wanted(arguments);
    return std::find_if(calls.begin(), calls.end(), [&](const Call& call) {
      return !call.isThePersons && call.name == name && std::regex_search(call.arguments, wanted);
    });
  }
  static bool remove(Calls& calls, const char* name, const std::string& arguments) {
    const auto first = find(calls, name, arguments);
    if (first == calls.end()) return false;
    // As if it had never been asked of this item.
    const std::string same = first->arguments;
    std::erase_if(calls, [&](const Call& call) { return call.name == name && call.arguments == same; });
    return true;
  }
  static bool change(Calls& calls, const char* name, const std::string& arguments, const std::string& from,
                     const std::string& to) {
    const auto call = find(calls, name, arguments);
    if (call == calls.end()) return false;
    const std::string before = call->arguments;
    call->arguments = std::regex_replace(before, std::regex(from), to);
    return call->arguments != before;
  }
  static bool add(Calls& calls, const char* name, const std::string& arguments) {
    const auto folder = find(calls, "mknodat", R"("pipe")");
    if (folder == calls.end()) return false;
    const std::string descriptor = folder->arguments.substr(0, folder->arguments.find(','));
    calls.insert(folder + 1, {.name = name,
                              .arguments = std::regex_replace(arguments, std::regex("FOLDER"), descriptor),
                              .answer = "0"});
    return true;
  }

  static std::vector<Seed> seeds() {
    return {
        {"a link is followed when what was made is held",
         [](Calls& calls) { return change(calls, "openat", R"("pipe", .*O_PATH)", R"(O_NOFOLLOW\|)", ""); }},
        {"links are followed on the way",
         [](Calls& calls) { return change(calls, "openat2", "target", "RESOLVE_NO_SYMLINKS", "0"); }},
        {"what is there is written over",
         [](Calls& calls) { return change(calls, "openat", R"("note", .*O_CREAT)", R"(O_EXCL\|)", ""); }},
        {"what is there is moved over",
         [](Calls& calls) { return change(calls, "renameat2", "Nas", "RENAME_NOREPLACE", "0"); }},
        {"the age of what was made is not asked for",
         [](Calls& calls) { return remove(calls, "statx", R"(inner/pipe.*STATX_BTIME)"); }},
        {"what was made is not looked at",
         [](Calls& calls) { return remove(calls, "newfstatat", R"(inner/socket>, "")"); }},
        {"the mode is given by name",
         [](Calls& calls) { return add(calls, "fchmodat", R"(FOLDER, "pipe", 0644)"); }},
        {"the times are given by name",
         [](Calls& calls) {
           return add(calls, "utimensat", R"(FOLDER, "pipe", NULL, AT_SYMLINK_NOFOLLOW)");
         }},
        {"the owner is given by path",
         [](Calls& calls) { return add(calls, "lchown", R"("/opt/scene-1/target/pipe", 0, 0)"); }},
        {"a file is opened by its path",
         [](Calls& calls) {
           return add(calls, "openat", R"(AT_FDCWD</>, "/opt/scene-1/target/pipe", O_WRONLY|O_CLOEXEC)");
         }},
    };
  }
};

TEST_F(BrokenObligations, EachIsSeen) {
  const Calls calls = record("target/inner", [](AttackScene& scene) {
    scene.addFolder(scene / "target/inner", 0755, AttackScene::person);
  });
  ASSERT_TRUE(judge(calls, isOpenToOthers).violations.empty());
  int caught = 0;
  for (const Seed& seed : seeds()) {
    Calls broken = calls;
    ASSERT_TRUE(seed.plant(broken)) << "no place for: " << seed.name;
    const auto violations = judge(broken, isOpenToOthers).violations;
    EXPECT_FALSE(violations.empty()) << seed.name;
    caught += violations.empty() ? 0 : 1;
  }
  EXPECT_EQ(caught, 10);
}

}  // namespace
}  // namespace halvorn
