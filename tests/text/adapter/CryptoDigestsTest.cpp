#include <gtest/gtest.h>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/CryptoDigests.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

TEST(CryptoDigests, AgreesWithTheTestsOfItsStandard) {
  const CryptoDigests digests;
  const std::pair<const char*, const char*> rows[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
      {"Größe", "d248453369cf82a6a64617f1357089c5"},
  };
  for (const auto& [text, digest] : rows) EXPECT_EQ(MD5String(text, digests), Text(digest)) << text;
}

}  // namespace
}  // namespace halvorn
