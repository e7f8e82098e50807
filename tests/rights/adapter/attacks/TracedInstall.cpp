#include "tests/rights/adapter/attacks/TracedInstall.h"

#include <unistd.h>

#include <filesystem>

namespace halvorn {

namespace fs = std::filesystem;

void TracedInstall::SetUp() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitized tool makes calls of its own";
#endif
  if (::access("/usr/bin/strace", X_OK) != 0) GTEST_SKIP() << "strace is not installed";
  AttackTest::SetUp();
}

void TracedInstall::fill(AttackScene& scene, const std::string& target) {
  scene.addProduct(scene / "source/Nas.app");
  const std::string inner = scene / "source/Nas.app/Contents/";
  scene.addLink(inner + "link", "Info.plist", AttackScene::person);
  scene.addLink(inner + "link2", "nowhere", AttackScene::person);
  fs::create_hard_link(inner + "Info.plist", inner + "hard");
  scene.addFile(inner + "big", std::string(3'000'000, 'b'), 0644, AttackScene::person);
  ASSERT_EQ(::mkfifo((inner + "pipe").c_str(), 0664), 0);
  scene.addFile(scene / "wrapper/folder/file", "new", 0644, AttackScene::person);
  scene.addFile(scene / "wrapper/note", "new", 0644, AttackScene::person);
  scene.addLink(scene / "wrapper/link", "nowhere", AttackScene::person);
  ASSERT_EQ(::mkfifo((scene / "wrapper/pipe").c_str(), 0664), 0);
  ASSERT_EQ(::mknod((scene / "wrapper/socket").c_str(), S_IFSOCK | 0664, 0), 0);
  scene.addFile(scene / (target + "/folder/old"), "old");
  scene.addLink(scene / (target + "/link"), "Nas.app");
  scene.addProduct(scene / (target + "/Nas.app"), AttackScene::root);
}

TracedInstall::Traced TracedInstall::install(AttackScene& scene, const std::string& target,
                                             const std::vector<std::string>& options) {
  std::vector<std::string> words{"/usr/bin/strace", "-f", "-qq", "-s", "4096", "-o", scene / "record"};
  words.insert(words.end(), options.begin(), options.end());
  for (const std::string& entry : AttackScene::pkexecEnvironment()) words.insert(words.end(), {"-E", entry});
  words.insert(words.end(),
               {KT_TRAIN, scene / "source/Nas.app", scene / (target + "/Nas.app"), scene / "wrapper"});
  const CommandResult result = runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}}, 20);
  return {.status = result.status, .calls = callsIn(bytesOf(scene / "record"))};
}

}  // namespace halvorn
