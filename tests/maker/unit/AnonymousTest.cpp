#include "tools/halvorn/Anonymous.h"

#include <gtest/gtest.h>

namespace halvorn {
namespace {

const Anonymous kAnna("/home/anna", "anna", "Anna M\u00FCller", "box.example.org");

TEST(Anonymous, NamesOfThePersonAndTheComputerAreReplaced) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"/home/anna/Applications/Foo.app", "~/Applications/Foo.app"},
      {"(\"/run/media/anna/Foo/Foo.app\")", "(\"/run/media/PERSON/Foo/Foo.app\")"},
      {"Anna M\u00FCller at box", "PERSON at COMPUTER"},
      {"M\u00FCller's box.example.org", "PERSON's COMPUTER"},
      {"annabelle and Hannah", "annabelle and Hannah"},
      {"/home/bob/x and /media/carol/y", "/home/SOMEBODY/x and /media/SOMEBODY/y"},
      {"toolbox anna-anna", "toolbox PERSON-PERSON"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(kAnna.text(text), expected);
}

TEST(Anonymous, EveryTextInAValueIs) {
  const PropertyDictionary value = {{"anna", PropertyArray{"box", PropertyDictionary{{"x", "anna"}}, 7}}};
  EXPECT_EQ(kAnna.value(value),
            PropertyValue(PropertyDictionary{
                {"PERSON", PropertyArray{"COMPUTER", PropertyDictionary{{"x", "PERSON"}}, 7}}}));
}

TEST(Anonymous, WhoHasNoNameLosesNothing) { EXPECT_EQ(Anonymous("/", "", "", "").text("/opt/x"), "/opt/x"); }

}  // namespace
}  // namespace halvorn
