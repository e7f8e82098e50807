#include "tools/halvorn/TreeSize.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

TEST(TreeSize, CountsBlocksAndAFileWithTwoNamesOnce) {
  const TemporaryFolder folder;
  const std::string tree = folder / "tree";
  const std::string file = putFile(tree + "/a/file", std::string(4097, 'x'));
  EXPECT_EQ(sizeOfTree(tree), 4U * 4096) << "two folders, and two blocks of the file";
  std::filesystem::create_hard_link(file, tree + "/again");
  EXPECT_EQ(sizeOfTree(tree), 4U * 4096);
  std::filesystem::create_symlink("/usr", tree + "/link");
  EXPECT_EQ(sizeOfTree(tree), 5U * 4096) << "the link is not followed";
  EXPECT_EQ(sizeOfTree(folder / "none"), 0U);
}

}  // namespace
}  // namespace halvorn
