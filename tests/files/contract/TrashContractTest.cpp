// What every Trash does, the one in memory and the one on the disk.
#include <gtest/gtest.h>

#include "tests/files/contract/TrashWorlds.h"
#include "tests/support/FailureText.h"

namespace halvorn {
namespace {

class TrashContract : public testing::TestWithParam<NamedTrashWorld> {
 protected:
  TrashContract() {
    world->addFile(world->folder() + "/Nas.app/Contents/file", "old");
    world->addFile(world->folder() + "/Other.app/file", "other");
  }
  // What it came to, without the world's folder: "Permission denied: Nas.app (move)".
  std::string recycling(const Text& folder, const std::vector<Text>& names) {
    std::string text = textOf(world->trash().recycle(folder, names));
    const std::string place = world->folder() + "/";
    if (const auto at = text.find(place); at != std::string::npos) text.erase(at, place.size());
    return text;
  }

  std::unique_ptr<TrashWorld> world = GetParam().make();
};

TEST_P(TrashContract, WhatIsRecycledIsGoneFromItsFolderAndLiesInTheTrash) {
  EXPECT_EQ(recycling(world->folder(), {"Nas.app"}), "");
  EXPECT_FALSE(world->files().fileExists(world->folder() + "/Nas.app"));
  EXPECT_EQ(world->trashedContents(world->folder() + "/Nas.app/Contents/file"), "old");
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Other.app/file"));
}

TEST_P(TrashContract, SeveralNamesGoTogether) {
  EXPECT_EQ(recycling(world->folder(), {"Nas.app", "Other.app"}), "");
  EXPECT_EQ(world->trashedContents(world->folder() + "/Other.app/file"), "other");
}

TEST_P(TrashContract, WhatIsNotThereCannotBeRecycled) {
  EXPECT_EQ(recycling(world->folder(), {"Missing.app"}), "No such file or directory: Missing.app (look)");
  EXPECT_EQ(recycling(world->folder() + "/nowhere", {"Nas.app"}),
            "No such file or directory: nowhere/Nas.app (reach)");
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Nas.app"));
}

TEST_P(TrashContract, OneMissingNameDoesNotKeepTheOthers) {
  EXPECT_EQ(recycling(world->folder(), {"Missing.app", "Nas.app"}),
            "No such file or directory: Missing.app (look)");
  EXPECT_FALSE(world->files().fileExists(world->folder() + "/Nas.app"));
}

TEST_P(TrashContract, ARefusalSaysWhyAndTheItemStays) {
  world->whereNothingMayBeTakenOut(
      [&] { EXPECT_EQ(recycling(world->folder(), {"Nas.app"}), "Permission denied: Nas.app (move)"); });
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Nas.app/Contents/file"));
}

TEST_P(TrashContract, NoNamesAreNoWork) { EXPECT_EQ(recycling(world->folder(), {}), ""); }

INSTANTIATE_TEST_SUITE_P(All, TrashContract, testing::ValuesIn(trashWorlds()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace halvorn
