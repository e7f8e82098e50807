// The tool as the person really starts it, through pkexec, with everything planted that the person can plant.
#include <filesystem>

#include "tests/rights/adapter/attacks/AttackScene.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

const std::string planted = KT_BINARY_DIR "/tests/libkt_planted.so";
constexpr const char* kSign = "/opt/planted";

class PkexecAttacks : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto reason = PolkitWorld::missing()) GTEST_SKIP() << *reason;
    world_ = std::make_unique<PolkitWorld>(PolkitWorldParts{.rules = PolkitWorld::ruleAnswering("YES")});
  }
  std::unique_ptr<PolkitWorld> world_;
};

TEST_F(PkexecAttacks, NeitherTheEnvironmentNorPlantedLibrariesReachTheTool) {
  AttackScene scene(*world_, {KT_TRAIN, false}, "/opt/scene");
  scene.addProduct(scene / "source/Nas.app");
  scene.addFolder(scene / "target");
  const std::string folder = scene / "bundle";
  scene.addFolder(folder, 0755, AttackScene::person);
  fs::copy_file(scene.tool().path, folder + "/train");
  fs::copy_file(planted, folder + "/planted.so");
  for (const char* library :
       {"libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6", "libnss_files.so.2"}) {
    fs::copy_file(planted, folder + "/" + library);
  }

  // It works where nothing is done against it.
  ASSERT_EQ(runCommand({"true"}, {.environment = {"LD_PRELOAD=" + planted}}).status, 0);
  ASSERT_TRUE(fs::remove(kSign)) << "the planted library leaves no sign: it proves nothing";

  const auto result =
      runCommand(world_->asPerson({"env", "-u", "HOME", "LD_PRELOAD=" + folder + "/planted.so",
                                   "LD_LIBRARY_PATH=" + folder, "LD_AUDIT=" + folder + "/planted.so",
                                   "QT_PLUGIN_PATH=" + folder, "TMPDIR=" + folder, "XDG_DATA_HOME=" + folder,
                                   "GCONV_PATH=" + folder, "/usr/bin/pkexec", "--disable-internal-agent",
                                   folder + "/train", scene / "source/Nas.app", scene / "target/Nas.app"}),
                 {.environment = world_->personsEnvironment(), .workingFolder = folder});
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(bytesOf(scene / "target/Nas.app/Contents/Info.plist"), "<plist/>");
  EXPECT_FALSE(fs::exists(kSign)) << "the planted library ran as root";
}

// Neither where the tool came from nor where it is run decides what it loads.
TEST_F(PkexecAttacks, TheToolNamesNoFolderForItsLibraries) {
  const auto header = runCommand({"readelf", "-d", KT_TRAIN});
  ASSERT_EQ(header.status, 0) << header.output;
  EXPECT_EQ(header.output.find("RPATH"), std::string::npos) << header.output;
  EXPECT_EQ(header.output.find("RUNPATH"), std::string::npos) << header.output;
  EXPECT_NE(header.output.find("NOW"), std::string::npos) << header.output;
}

}  // namespace
}  // namespace halvorn
