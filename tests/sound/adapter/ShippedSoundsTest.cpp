// The sounds in Resources are what their script makes.
#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/SoundData.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

TEST(ShippedSounds, AreWhatTheirScriptMakes) {
  if (!programExists("python3")) GTEST_SKIP() << "python3 is not installed";
  TemporaryFolder folder;
  const std::string script = std::string(KT_SOURCE_DIR) + "/Resources/sounds/make_sounds";
  const CommandResult made = runCommand({script, folder.path().string()});
  ASSERT_EQ(made.status, 0) << made.output;
  for (const char* name : {"Done.aiff", "SoundOfSilence.aiff"}) {
    EXPECT_TRUE(fileBytes(folder / name) == shippedSound(name)) << name;
  }
}

}  // namespace
}  // namespace halvorn
