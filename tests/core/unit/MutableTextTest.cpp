#include "Core/MutableText.h"

#include <gtest/gtest.h>

#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(MutableText, ACopyOfTheHandleIsTheSameObject) {
  MutableText name(Text("Micro"));
  const MutableText same = name;
  name.append(" Pro");
  EXPECT_TRUE(same.isSameObject(name));
  EXPECT_EQ(same.text(), Text("Micro Pro"));
}

TEST(MutableText, EqualContentIsNotTheSameObject) {
  const MutableText a(Text("a"));
  const MutableText b(Text("a"));
  EXPECT_EQ(a, b);
  EXPECT_FALSE(a.isSameObject(b));
  EXPECT_FALSE(MutableText().isSameObject(MutableText()));
}

TEST(MutableText, TheImmutableCopyKeepsWhatTheTextWas) {
  MutableText name(Text("Micro"));
  const Text before = name.text();
  name.setText("Nano");
  EXPECT_EQ(before, Text("Micro"));
  EXPECT_EQ(name.text(), Text("Nano"));
}

TEST(MutableText, InsertsErasesAndReplaces) {
  MutableText text(Text("abcdef"));
  text.insert(2, "XY");
  EXPECT_EQ(text.text(), Text("abXYcdef"));
  text.erase(0, 2);
  EXPECT_EQ(text.text(), Text("XYcdef"));
  text.replace(1, 2, "-");
  EXPECT_EQ(text.text(), Text("X-def"));
  EXPECT_EQ(text.length(), 5u);
  EXPECT_EQ(text.at(1), u'-');
}

TEST(MutableText, PositionsBeyondTheEndAreTheEnd) {
  MutableText text(Text("ab"));
  text.insert(99, "c");
  text.erase(2, 99);
  text.replace(99, 99, "d");
  EXPECT_EQ(text.text(), Text("abd"));
}

TEST(MutableText, ATextCanBeAddedToItself) {
  MutableText text(Text("ab"));
  text.append(text.text());
  EXPECT_EQ(text.text(), Text("abab"));
}

}  // namespace
}  // namespace halvorn
