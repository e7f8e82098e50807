#include "Platform/linux/audio/XdgSoundFolders.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "tests/fakes/FakeSearchPaths.h"

namespace halvorn {
namespace {

class XdgSoundFoldersTest : public testing::Test {
 protected:
  XdgSoundFoldersTest() {
    if (const char* value = ::getenv("XDG_DATA_HOME")) old_ = value;
  }
  ~XdgSoundFoldersTest() override { set(old_ ? old_->c_str() : nullptr); }
  static void set(const char* value) {
    value ? ::setenv("XDG_DATA_HOME", value, 1) : ::unsetenv("XDG_DATA_HOME");
  }
  static std::vector<Text> folders() { return XdgSoundFolders(FakeSearchPaths()).additionalSoundFolders(); }

 private:
  std::optional<std::string> old_;
};

TEST_F(XdgSoundFoldersTest, AreThoseOfThePersonThenThoseOfTheMachine) {
  set("/data/anna");
  EXPECT_EQ(folders(), (std::vector<Text>{"/data/anna/sounds", "/usr/share/sounds"}));
}

TEST_F(XdgSoundFoldersTest, LieInTheHomeFolderUnlessToldOtherwise) {
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/data"}) {
    set(value);
    EXPECT_EQ(folders(), (std::vector<Text>{"/home/anna/.local/share/sounds", "/usr/share/sounds"}));
  }
}

}  // namespace
}  // namespace halvorn
