// halvorn check: what the installer reads from a product.
#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class CheckCommand : public HalvornFixture {
 protected:
  [[nodiscard]] std::string checked(int status = 0) const {
    return answer({"check", product()}, "check", status);
  }
  // Changes the information dictionary.
  void replace(const std::string& text, const std::string& with) const {
    const std::string path = product() + "/Contents/Info.plist";
    std::string all = contentsOf(path);
    ASSERT_NE(all.find(text), std::string::npos) << all;
    all.replace(all.find(text), text.size(), with);
    putFile(path, all);
  }
};

TEST_F(CheckCommand, ASoundProductIsReadAsTheInstallerReadsIt) {
  makeProduct();
  putFile(product() + "/Contents/Resources/de.lproj/InfoPlist.strings",
          "\"CFBundleDisplayName\" = \"Muster\";\n");
  const std::string checks = checked();
  EXPECT_TRUE(has(checks, "\"name\": \"Sample\"")) << checks;
  EXPECT_TRUE(has(checks, "\"version\": \"2.0\"")) << checks;
  EXPECT_TRUE(has(checks, "\"signature\": \"SMPL\"")) << checks;
  EXPECT_TRUE(has(checks, "\"quits\": [\"SMPL\"]")) << checks;
  EXPECT_TRUE(has(checks, "\"names\": {\"\": \"Sample\", \"de\": \"Muster\"}")) << checks;
  EXPECT_TRUE(has(checks, "/Contents/Resources/Sample.png\", \"sizes\": [256]}")) << checks;
  EXPECT_TRUE(has(checks, "\"no picture of 48 points\"")) << checks;
  EXPECT_TRUE(has(checks, "\"starts\": true")) << checks;
  EXPECT_TRUE(has(checks, "\"title\": \"Install Sample\"")) << checks;
  EXPECT_TRUE(has(checks, "\"intro\": \"This program will install Sample on your computer.\"")) << checks;
  EXPECT_TRUE(has(checks, "\"ok\": true")) << checks;
  EXPECT_FALSE(has(checks, "\"error\"")) << checks;
  const CommandResult lines = halvorn({"check", product() + "/"});
  EXPECT_EQ(lines.status, 0);
  EXPECT_TRUE(has(lines.output, "Signature:  SMPL\n")) << lines.output;
}

TEST_F(CheckCommand, EachSignatureThatNamesNobodyIsTold) {
  makeProduct({.signature = std::nullopt});
  EXPECT_TRUE(has(checked(1), "missing product signature"));
  makeProduct({.signature = "????"});
  EXPECT_TRUE(has(checked(0), "\\\"????\\\" names no program"));
  makeProduct({.signature = "LONGER"});
  EXPECT_TRUE(has(checked(1), "it is not four characters"));
}

TEST_F(CheckCommand, AProgramThatCannotStartHereIsAnError) {
  makeProduct();
  const std::string program = product() + "/Contents/Linux/Sample";
  fs::permissions(program, fs::perms::owner_read);
  EXPECT_TRUE(has(checked(1), "the program is not executable"));
  fs::permissions(program, fs::perms::owner_all);
  putFile(program, "\xCF\xFA\xED\xFE of another system");
  EXPECT_TRUE(has(checked(1), "for another system"));
  fs::remove(program);
  EXPECT_TRUE(has(checked(1), "no such file is in Contents/Linux or Contents/MacOS"));
  replace("CFBundleExecutable", "Other");
  EXPECT_TRUE(has(checked(1), "\"key\": \"CFBundleExecutable\""));
}

TEST_F(CheckCommand, TheMinimumOfAnotherSystemIsAnErrorWithItsMend) {
  makeProduct({.minSystemVersion = "10.13"});
  const std::string checks = checked(1);
  EXPECT_TRUE(has(checks, "\"compatible\": false")) << checks;
  EXPECT_TRUE(has(checks, "LSMinimumSystemVersion-linux")) << checks;
}

TEST_F(CheckCommand, IconsNamesAndLinksAreLookedAt) {
  makeProduct({.hasIcon = false});
  fs::create_symlink("../../../outside", product() + "/Contents/Resources/link");
  fs::create_symlink("version.txt", product() + "/Contents/Resources/inner");
  const std::string checks = checked(0);
  EXPECT_TRUE(has(checks, "a general icon is shown")) << checks;
  EXPECT_TRUE(has(checks, "\"Contents/Resources/link\"")) << checks;
  EXPECT_FALSE(has(checks, "Contents/Resources/inner\"")) << checks;
}

TEST_F(CheckCommand, WhatIsNoBundleIsSaid) {
  EXPECT_EQ(halvorn({"check", product()}).status, 66);
  fs::create_directories(product());
  EXPECT_TRUE(has(checked(1), "it is missing or cannot be read"));
  makeProduct();
  fs::rename(product(), image() + "/Sample");
  const std::string checks = answer({"check", image() + "/Sample"}, "check", 1);
  EXPECT_TRUE(has(checks, "does not end in .app")) << checks;
}

}  // namespace
}  // namespace halvorn
