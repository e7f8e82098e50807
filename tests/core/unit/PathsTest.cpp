#include "Core/Paths.h"

#include <gtest/gtest.h>

namespace halvorn {
namespace {

TEST(Paths, LastComponentAndItsFolder) {
  const struct {
    const char* path;
    const char* last;
    const char* folder;
  } cases[] = {
      {"/a/b", "b", "/a"},  {"/a/b/", "b", "/a"},
      {"/a", "a", "/"},     {"/", "/", "/"},
      {"//", "/", "/"},     {"a", "a", ""},
      {"a/b", "b", "a"},    {"", "", ""},
      {"/a//b", "b", "/a"}, {"/a b/c d", "c d", "/a b"},
      {"~", "~", ""},       {"~/x", "x", "~"},
      {"a/", "a", ""},      {"/a/b//", "b", "/a"},
  };
  for (const auto& [path, last, folder] : cases) {
    EXPECT_EQ(Paths::lastComponent(path), Text(last)) << path;
    EXPECT_EQ(Paths::deletingLastComponent(path), Text(folder)) << path;
  }
}

TEST(Paths, ExtensionsNeedANameBeforeAndLettersAfter) {
  const struct {
    const char* path;
    const char* extension;
    const char* without;
  } cases[] = {
      {"/a/b.app", "app", "/a/b"},
      {"/a/b.app/", "app", "/a/b"},
      {"b.tar.gz", "gz", "b.tar"},
      {".hidden", "", ".hidden"},
      {"/a.app/b", "", "/a.app/b"},
      {"name.", "", "name."},
      {"", "", ""},
      {"/", "", "/"},
  };
  for (const auto& [path, extension, without] : cases) {
    EXPECT_EQ(Paths::extension(path), Text(extension)) << path;
    EXPECT_EQ(Paths::deletingExtension(path), Text(without)) << path;
  }
}

TEST(Paths, AppendsWithOneSlashBetween) {
  EXPECT_EQ(Paths::appending("/a", "b"), Text("/a/b"));
  EXPECT_EQ(Paths::appending("/a/", "b"), Text("/a/b"));
  EXPECT_EQ(Paths::appending("/", "b"), Text("/b"));
  EXPECT_EQ(Paths::appending("", "b"), Text("b"));
  EXPECT_EQ(Paths::appending("/a", ""), Text("/a"));
}

TEST(Paths, SlashesInARowCountOnceWhereverAPathIsTakenApartOrPutTogether) {
  EXPECT_EQ(Paths::deletingLastComponent("/m//W///Foo.app"), Text("/m/W"));
  EXPECT_EQ(Paths::deletingLastComponent("//m//Foo.app"), Text("/m"));
  EXPECT_EQ(Paths::deletingLastComponent("m//W//Foo.app//"), Text("m/W"));
  EXPECT_EQ(Paths::deletingLastComponent("//Foo.app"), Text("/"));
  EXPECT_EQ(Paths::appending("/m//W", "Foo.app"), Text("/m/W/Foo.app"));
  EXPECT_EQ(Paths::appending("//", "/Foo.app"), Text("/Foo.app"));
  EXPECT_EQ(Paths::appending("/m/", "//W//Foo.app"), Text("/m/W/Foo.app"));
  EXPECT_EQ(Paths::appending("", "a//b"), Text("a/b"));
  EXPECT_EQ(Paths::appending("/m//W", ""), Text("/m/W"));
  EXPECT_EQ(Paths::deletingExtension("/m//W//Foo.app"), Text("/m/W/Foo"));
  EXPECT_EQ(Paths::deletingExtension("/m//W//Foo"), Text("/m/W/Foo"));
}

TEST(Paths, ComponentsBeginWithTheRootOfAnAbsolutePath) {
  EXPECT_EQ(Paths::components("/Volumes/NAS//x/"), (std::vector<Text>{"/", "Volumes", "NAS", "x"}));
  EXPECT_EQ(Paths::components("a/b"), (std::vector<Text>{"a", "b"}));
  EXPECT_TRUE(Paths::components("").empty());
}

TEST(Paths, TildeStandsForTheHomeFolderOfTheNamedAccountElseOfThePerson) {
  const auto homeOfAccount = [](const Text& account) {
    return account == Text("bert") ? OptionalText("/srv/bert") : std::nullopt;
  };
  const auto expanded = [&](const Text& path) {
    return Paths::expandingTilde(path, "/home/anna", homeOfAccount);
  };
  EXPECT_EQ(expanded("~/Library"), Text("/home/anna/Library"));
  EXPECT_EQ(expanded("~"), Text("/home/anna"));
  EXPECT_EQ(expanded("~bert"), Text("/srv/bert"));
  EXPECT_EQ(expanded("~bert/x"), Text("/srv/bert/x"));
  EXPECT_EQ(expanded("~no body/x"), Text("~no body/x"));
  EXPECT_EQ(expanded("/a/~bert"), Text("/a/~bert"));
  EXPECT_EQ(expanded(""), Text(""));
  EXPECT_EQ(Paths::expandingTilde("~bert/x", "/home/anna"), Text("~bert/x")) << "nobody to ask";
}

TEST(Paths, TheHomeFolderIsAbbreviatedByATilde) {
  EXPECT_EQ(Paths::abbreviatingWithTilde("/home/anna/x", "/home/anna/"), Text("~/x"));
  EXPECT_EQ(Paths::abbreviatingWithTilde("/home/anna", "/home/anna"), Text("~"));
  EXPECT_EQ(Paths::abbreviatingWithTilde("/home/annabel", "/home/anna"), Text("/home/annabel"));
  EXPECT_EQ(Paths::abbreviatingWithTilde("/opt", "/"), Text("/opt"));
  EXPECT_EQ(Paths::abbreviatingWithTilde("/h/x", "/h"), Text("~/x")) << "the shortest folder that is one";
}

}  // namespace
}  // namespace halvorn
