// The same cases for the fakes of what is known of files and file systems and for what they stand for.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "tests/fakes/FakeItemFacts.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

struct FakeFiles {
  FakeFiles() { system.fileSystemTypes["/"] = "ext4"; }
  Text plainFile() { return "/plain"; }
  Text aliasOf(const Text& target) {
    items.aliasTargets["/alias"] = target;
    return "/alias";
  }

  FakeItemFacts items;
  FakeSystemFacts system;
};

struct RealFiles {
  Text plainFile() {
    const std::string path = std::filesystem::canonical(folder.path()).string() + "/plain";
    std::ofstream(path) << "text";
    return path;
  }
  Text aliasOf(const Text& target) {
    std::filesystem::create_symlink(target.bytes(), folder / "alias");
    return folder / "alias";
  }

  TemporaryFolder folder;
  const LinuxBundles bundles{"/program", {}};
  const LinuxItemFacts items{bundles};
  LinuxSystemFacts system;
};

template <typename Files>
class FilesContract : public testing::Test {
 protected:
  Files files;
};
using FilesWorlds = testing::Types<FakeFiles, RealFiles>;
TYPED_TEST_SUITE(FilesContract, FilesWorlds);

TYPED_TEST(FilesContract, AliasLeadsToItsTargetAndNothingElseIsOne) {
  const Text plain = this->files.plainFile();
  EXPECT_EQ(this->files.items.aliasTarget(plain), std::nullopt);
  EXPECT_EQ(this->files.items.aliasTarget("/no/such/file"), std::nullopt);
  EXPECT_EQ(this->files.items.aliasTarget(this->files.aliasOf(plain)), plain);
}

TYPED_TEST(FilesContract, FileSystemHasANameAndAMissingPathIsAnError) {
  const FileSystemAnswer root = this->files.system.fileSystemOf("/");
  EXPECT_EQ(root.status, 0);
  EXPECT_FALSE(root.typeName.isEmpty());
  const FileSystemAnswer missing = this->files.system.fileSystemOf("/no/such/file");
  EXPECT_LT(missing.status, 0);
  EXPECT_TRUE(missing.typeName.isEmpty());
}

}  // namespace
}  // namespace halvorn
