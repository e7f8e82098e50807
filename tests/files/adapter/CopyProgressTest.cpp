// How much there is to copy, and how much has been copied.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Core/ByteCounter.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/PosixItemSizes.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class CopyProgress : public testing::Test {
 protected:
  CopyProgress() {
    fs::create_directories(item() / "Contents/Resources");
    write("small", 7);
    write("Contents/program", 3U << 20);
    write("Contents/Resources/big", 20U << 20);
    write("Contents/Resources/none", 0);
    fs::create_symlink("Contents/Resources/big", item() / "link");
    fs::create_symlink("/nonexistent", item() / "broken");
  }
  [[nodiscard]] fs::path item() const { return folder_.path() / "Sample.app"; }
  void write(const std::string& name, std::size_t bytes) {
    std::ofstream(item() / name, std::ios::binary) << std::string(bytes, 'x');
    bytes_ += bytes;
  }

  TemporaryFolder folder_;
  std::uint64_t bytes_ = 0;
};

TEST_F(CopyProgress, AllOfAnItemIsCountedOnceWhateverItIsMadeOf) {
  ByteCounter copied;
  PosixFileManager files({.copied = &copied});
  ASSERT_EQ(files.copyItem(Text(item().string()), Text(folder_ / "Copy.app")), std::nullopt);
  EXPECT_EQ(copied.bytes(), bytes_);
  ASSERT_EQ(files.copyItem(Text((item() / "small").string()), Text(folder_ / "copy")), std::nullopt);
  EXPECT_EQ(copied.bytes(), bytes_ + 7);
}

TEST_F(CopyProgress, AHalfCopyCountsAsWhatIsThere) {
  ByteCounter copied;
  PosixFileManager files({.copied = &copied});
  EXPECT_NE(files.copyItem(Text(item().string()), Text(folder_ / "no/such/folder/Copy.app")), std::nullopt);
  EXPECT_EQ(copied.bytes(), 0U);
}

TEST_F(CopyProgress, TheSizeIsThatOfAllFilesAndOfNoLink) {
  const PosixItemSizes sizes;
  EXPECT_EQ(sizes.bytesIn(Text(item().string()), kNeverCanceled), bytes_);
  EXPECT_EQ(sizes.bytesIn(Text((item() / "small").string()), kNeverCanceled), 7U);
  EXPECT_EQ(sizes.bytesIn(Text((item() / "link").string()), kNeverCanceled), 0U);
  EXPECT_EQ(sizes.bytesIn(Text((item() / "missing").string()), kNeverCanceled), std::nullopt);
}

TEST_F(CopyProgress, WhoGivesUpGetsNoSize) {
  Cancellation givenUp;
  givenUp.request();
  EXPECT_EQ(PosixItemSizes().bytesIn(Text(item().string()), givenUp), std::nullopt);
}

}  // namespace
}  // namespace halvorn
