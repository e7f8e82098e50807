#include <gtest/gtest.h>
#include <sys/utsname.h>

#include "Platform/session/linux/LinuxSystemFacts.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(LinuxSystemFacts, TellsTheKernelsThreeNumbers) {
  const struct {
    const char* release;
    std::optional<int> major, minor, bugfix;
  } cases[] = {
      {"6.1.90", 6, 1, 90},
      {"6.1.0-21-amd64", 6, 1, 0},
      {"6.12-rc3", 6, 12, std::nullopt},
      {"7", 7, std::nullopt, std::nullopt},
      {"", {}, {}, {}},
      {"x.y.z", {}, {}, {}},
      {"6.1.x", 6, 1, {}},
      {"99999999999.1.1", {}, {}, {}},
      {"-6.1.1", {}, {}, {}},
  };
  for (const auto& c : cases) {
    const LinuxSystemFacts info{Text(c.release)};
    EXPECT_EQ(info.majorVersion(), c.major) << c.release;
    EXPECT_EQ(info.minorVersion(), c.minor) << c.release;
    EXPECT_EQ(info.bugfixVersion(), c.bugfix) << c.release;
    EXPECT_EQ(info.packedVersion(), std::nullopt);
  }
}

TEST(LinuxSystemFacts, TellsThoseOfThisKernel) {
  utsname names = {};
  ASSERT_EQ(::uname(&names), 0);
  const LinuxSystemFacts info;
  const std::string version =
      std::to_string(info.majorVersion().value()) + "." + std::to_string(info.minorVersion().value());
  EXPECT_TRUE(std::string(names.release).starts_with(version)) << names.release;
  EXPECT_TRUE(info.bugfixVersion());
}

}  // namespace
}  // namespace halvorn
