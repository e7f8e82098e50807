#include "Core/PropertyValue.h"

#include <gtest/gtest.h>

namespace halvorn {
namespace {

TEST(PropertyValue, TruthIsReadTheWayPeopleWriteIt) {
  for (const char* text : {"YES", "yes", "true", "1", " y", "007", "-2"}) {
    EXPECT_TRUE(PropertyValue(text).isTrue()) << text;
  }
  for (const char* text : {"NO", "", "0", "false", "on", "000", "x1"}) {
    EXPECT_FALSE(PropertyValue(text).isTrue()) << text;
  }
  EXPECT_TRUE(PropertyValue(2).isTrue());
  EXPECT_FALSE(PropertyValue(0.0).isTrue());
  EXPECT_TRUE(PropertyValue(true).isTrue());
  EXPECT_FALSE(PropertyValue(PropertyArray{}).isTrue());
}

TEST(PropertyValue, DescriptionIsOneLineWithNestedTextsInQuotes) {
  const PropertyDictionary dictionary = {
      {"quitCode", PropertyArray{"ABCD", "EFGH"}}, {"name", "Foo Bar"}, {"count", 3}, {"flag", true}};
  EXPECT_EQ(
      describe(dictionary),
      Text("{\"count\" = 3; \"flag\" = YES; \"name\" = \"Foo Bar\"; \"quitCode\" = (\"ABCD\", \"EFGH\"); }"));
  EXPECT_EQ(PropertyValue("Foo").description(), Text("Foo"));
  EXPECT_EQ(describe(std::vector<Text>{"/bin/x", "-key"}), Text("(\"/bin/x\", \"-key\")"));
  EXPECT_EQ(PropertyValue(2.5).description(), Text("2.5"));
}

TEST(PropertyValue, TextForKeyTakesOnlyTexts) {
  const PropertyDictionary dictionary = {{"a", "x"}, {"b", 1}};
  EXPECT_EQ(textForKey(dictionary, "a"), Text("x"));
  EXPECT_EQ(textForKey(dictionary, "b"), std::nullopt);
  EXPECT_EQ(textForKey(dictionary, "c"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
