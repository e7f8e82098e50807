// What anybody may have put there, read up to a limit and without waiting.
#include "Platform/files/posix/BoundedFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

class BoundedFile : public testing::Test {
 protected:
  [[nodiscard]] std::string at(const std::string& name) const { return (folder.path() / name).string(); }
  [[nodiscard]] std::string made(const std::string& name, const std::string& bytes) const {
    std::ofstream(at(name), std::ios::binary) << bytes;
    return at(name);
  }

  TemporaryFolder folder;
};

TEST_F(BoundedFile, IsReadWholeUpToTheLimitAndNotAByteFurther) {
  const std::string bytes = std::string(200'000, 'x') + std::string(1, '\0') + "\xff";
  const std::string path = made("file", bytes);
  EXPECT_EQ(readRegularFile(path, bytes.size()), bytes);
  EXPECT_EQ(readRegularFile(path, bytes.size() + 1), bytes);
  EXPECT_EQ(readRegularFile(path, bytes.size() - 1), std::nullopt);
  EXPECT_EQ(readRegularFile(made("empty", ""), 0), "");
}

TEST_F(BoundedFile, ThatIsLongerThanItsSizeSaysIsStillBounded) {
  // The kernel's own files count as empty.
  const auto whole = readRegularFile("/proc/self/mountinfo", 1024UL * 1024);
  ASSERT_TRUE(whole.has_value());
  ASSERT_GT(whole->size(), 20U);
  EXPECT_EQ(readRegularFile("/proc/self/mountinfo", 20), std::nullopt);
}

TEST_F(BoundedFile, IsReachedThroughALink) {
  std::filesystem::create_symlink(made("file", "bytes"), at("link"));
  EXPECT_EQ(readRegularFile(at("link"), 10), "bytes");
}

TEST_F(BoundedFile, IsNothingElseThanARegularFile) {
  ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", at("device"));
  for (const std::string& path :
       {at("pipe"), at("device"), at(""), at("missing"), made("file", "") + '\0', std::string()})
    EXPECT_EQ(readRegularFile(path, 100), std::nullopt) << path;
}

TEST_F(BoundedFile, ThatIsOpenIsReadFromWhereItStands) {
  const FileDescriptor file(::open(made("file", "0123456789").c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(readStartOfOpenFile(file, 4), "0123");
  EXPECT_EQ(readOpenFile(file, 10), "456789");
  EXPECT_EQ(readOpenFile(FileDescriptor(), 10), std::nullopt);
}

}  // namespace
}  // namespace halvorn
