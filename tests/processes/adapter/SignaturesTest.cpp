#include <gtest/gtest.h>

#include <set>
#include <string>

#include "Core/FourCharCode.h"
#include "Platform/processes/linux/proc/Signatures.h"

namespace halvorn {
namespace {

TEST(Signatures, OnlyACodeThatIsDeclaredAndCanBeWrittenCounts) {
  const struct {
    PropertyDictionary info;
    bool isDeclared;
    const char* why;
  } rows[] = {{{{"CFBundleSignature", "EDIT"}}, true, "four characters"},
              {{{"CFBundleSignature", "a b "}}, true, "blanks are characters"},
              {{{"CFBundleSignature", "????"}}, false, "stands for none"},
              {{{"CFBundleSignature", ""}}, false, "empty"},
              {{{"CFBundleSignature", "ABC"}}, false, "too short"},
              {{{"CFBundleSignature", "ABCDE"}}, false, "too long"},
              {{{"CFBundleSignature", "日本語版"}}, false, "cannot be converted"},
              {{{"CFBundleSignature",
                 "A\x01"
                 "CD"}},
               false,
               "a control character"},
              {{{"CFBundleSignature", 0x45444954}}, false, "no text"},
              {{}, false, "missing"}};
  for (const auto& row : rows) {
    const FourCharCode code = signatureFrom(row.info, "org.example.x");
    EXPECT_EQ(code != derivedSignature("org.example.x"), row.isDeclared) << row.why;
  }
}

TEST(Signatures, NoTextEverConvertsToADerivedOne) {
  std::set<FourCharCode> seen;
  for (int i = 0; i < 20'000; ++i) {
    const FourCharCode code = derivedSignature(Text("org.example." + std::to_string(i)));
    EXPECT_NE(code, 0u);
    EXPECT_EQ(fourCharCodeFromText(textFromFourCharCode(code)), 0u) << std::hex << code;
    EXPECT_EQ(textFromFourCharCode(code).length(), 4u);
    seen.insert(code);
  }
  EXPECT_GT(seen.size(), 19'900u);
  EXPECT_EQ(derivedSignature("org.example.x"), derivedSignature("org.example.x"));
}

}  // namespace
}  // namespace halvorn
