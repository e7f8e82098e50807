#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "Core/FourCharCode.h"
#include "Platform/bundles/linux/ResourceFork.h"

namespace halvorn {
namespace {

class ResourceForks : public testing::Test {
 protected:
  static std::string number(std::uint32_t value, int size) {
    std::string result;
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
      result.push_back(static_cast<char>(value >> shift));
    return result;
  }
  // A fork with the resources 'TEXT' 5 "hello" and 'vers' 1, the four bytes.
  static std::string fork() {
    const std::string data = number(5, 4) + "hello" + number(4, 4) + std::string("\x03\x20\x12\x01", 4);
    const std::string types =
        number(1, 2) + "TEXT" + number(0, 2) + number(18, 2) + "vers" + number(0, 2) + number(30, 2);
    const std::string references = number(5, 2) + number(0xFFFF, 2) + number(0, 4) + number(0, 4) +
                                   number(1, 2) + number(0xFFFF, 2) + number(9, 4) + number(0, 4);
    const std::string map = std::string(24, '\0') + number(28, 2) + number(100, 2) + types + references;
    const std::uint32_t mapStart = 16 + static_cast<std::uint32_t>(data.size());
    return number(16, 4) + number(mapStart, 4) + number(static_cast<std::uint32_t>(data.size()), 4) +
           number(static_cast<std::uint32_t>(map.size()), 4) + data + map;
  }
};

TEST_F(ResourceForks, ResourcesAreFoundByTypeAndNumber) {
  EXPECT_EQ(resourceIn(fork(), fourCharCode("TEXT"), 5), "hello");
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), 1), std::string("\x03\x20\x12\x01", 4));
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), 2), std::nullopt);
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), -1), std::nullopt);
  EXPECT_EQ(resourceIn(fork(), fourCharCode("STR "), 5), std::nullopt);
}

TEST_F(ResourceForks, TruncatedForksHoldNothingAndHarmNobody) {
  const std::string whole = fork();
  for (std::size_t length = 0; length < whole.size() - 8; ++length) {
    EXPECT_EQ(resourceIn(whole.substr(0, length), fourCharCode("vers"), 1), std::nullopt) << length;
  }
}

TEST_F(ResourceForks, EveryByteMayBeAnyByte) {
  const std::string whole = fork();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const char byte : {'\0', '\x7F', '\x80', '\xFF'}) {
      std::string damaged = whole;
      damaged[i] = byte;
      const auto found = resourceIn(damaged, fourCharCode("vers"), 1);
      EXPECT_TRUE(!found || found->size() <= whole.size());
    }
  }
}

TEST_F(ResourceForks, AppleDoubleFilesCarryOne) {
  const std::string file = number(0x00051607, 4) + number(0x00020000, 4) + std::string(16, '\0') +
                           number(2, 2) + number(9, 4) + number(50, 4) + number(4, 4) + number(2, 4) +
                           number(54, 4) + number(4, 4) + "infofork";
  EXPECT_EQ(resourceForkInAppleDouble(file), "fork");
  EXPECT_EQ(resourceForkInAppleDouble(file.substr(0, file.size() - 1)), std::nullopt);
  EXPECT_EQ(resourceForkInAppleDouble("not one"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
