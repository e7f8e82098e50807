// halvorn image: media, what lies on them, and that it starts from there.
#include <sys/stat.h>

#include <map>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class ImageCommand : public HalvornFixture {
 protected:
  void SetUp() override {
    HalvornFixture::SetUp();
    if (IsSkipped()) return;
    makeProduct();
    fs::create_directories(installer() + "/Contents");
    fs::copy(KT_SOURCE_DIR "/Resources", installer() + "/Contents/Resources", fs::copy_options::recursive);
    putStarter("printf '%s\\n' \"$@\" >\"$HOME/started\"\n");
  }
  // An installer that tells how it was started.
  void putStarter(const std::string& script) const {
    putFile(installer() + "/Contents/Linux/HalvornInstaller", "#!/bin/sh\n" + script, Executable::Yes);
  }
  [[nodiscard]] std::string installer() const { return folder_ / "HalvornInstaller.app"; }
  [[nodiscard]] std::vector<std::string> words(const std::string& image,
                                               std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"image", product(), "--installer", installer(), "-o", folder_ / image});
    return more;
  }
  [[nodiscard]] std::string made(const std::string& image, const std::vector<std::string>& more = {}) const {
    return answer(words(image, more), "image");
  }
  [[nodiscard]] std::string unpacked(const std::string& image) const {
    const std::string to = folder_ / ("unpacked " + image);
    std::vector<std::string> words = {"unsquashfs", "-quiet", "-no-progress", "-d", to, folder_ / image};
    if (image.ends_with(".iso"))
      words = {"xorriso", "-osirrox", "on", "-indev", folder_ / image, "-extract", "/", to};
    if (image.ends_with(".run")) words = {folder_ / image, "--unpack", to};
    const auto result = runCommand(words, {.environment = environment_});
    EXPECT_EQ(result.status, 0) << result.output;
    return to;
  }
  [[nodiscard]] std::string started() const {
    EXPECT_TRUE(eventually([&] { return !contentsOf(home() + "/started").empty(); }));
    return contentsOf(home() + "/started");
  }
  [[nodiscard]] static bool hasTools(const std::string& image) {
    if (image.ends_with(".run"))
      return programExists("zstd") && fs::exists(fs::path(KT_HALVORN).parent_path() / "HalvornStarter");
    return programExists(image.ends_with(".iso") ? "xorriso" : "mksquashfs");
  }
};

TEST_F(ImageCommand, WhatAPersonOpensStartsTheInstallerFromWhereverItLies) {
  const std::string readMe = putFile(folder_ / "Read Me.txt", "Welcome");
  for (const char* image : {"Sample.squashfs", "Sample.iso", "Sample.run"}) {
    if (!hasTools(image)) GTEST_SKIP() << "the program that makes " << image << " is not installed";
    const std::string answered = made(image, {"--read-me", readMe});
    EXPECT_TRUE(has(answered, "\"launcher\": \"Install Sample\"")) << answered;
    const std::string medium = unpacked(image);
    for (const auto& entry : fs::directory_iterator(medium))
      EXPECT_NE(entry.path().extension(), ".app")
          << "nothing there is a folder that people would have to open";
    fs::remove(home() + "/started");
    const auto run = runCommand({medium + "/Install Sample", "-completionQuit", "1"},
                                {.environment = environment_, .workingFolder = "/"});
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(started(), "-sourcePath\n" + medium + "/.halvorn/Sample.app\n-readMePath\n" + medium +
                             "/Read Me.txt\n-completionQuit\n1\n");
    EXPECT_EQ(runCommand({"diff", "-r", product(), medium + "/.halvorn/Sample.app"}).output, "");
    EXPECT_EQ(contentsOf(medium + "/.xdg-volume-info"),
              "[Volume Info]\nName=Sample\nIconFile=.halvorn/icon.png\n");
  }
}

TEST_F(ImageCommand, ASingleFileStartsTheInstallerAndLeavesNothing) {
  if (!hasTools("Sample.run")) GTEST_SKIP() << "zstd or the library for it is not installed";
  const std::string answered = made("Sample.run");
  EXPECT_TRUE(has(answered, "\"launcher\": \"Install Sample\"")) << answered;
  EXPECT_EQ(runCommand({"sha256sum", "-c", "--quiet", "Sample.run.sha256"},
                       {.environment = environment_, .workingFolder = folder_.path().string()})
                .status,
            0);
  // What it starts sees the product; its status is that of the file.
  putStarter("[ \"$1\" = --version ] && exit 0; ls -l \"$2/Contents\" >\"$HOME/started\"; exit 7\n");
  ASSERT_NE(made("Other.run"), "");
  const auto run = runCommand({folder_ / "Other.run"}, {.environment = environment_, .workingFolder = "/"});
  EXPECT_EQ(run.status, 7) << run.output;
  EXPECT_TRUE(has(started(), "-rw-r--r--")) << started();
  for (const auto& entry : fs::recursive_directory_iterator(home() + "/.cache"))
    EXPECT_FALSE(fs::is_regular_file(entry)) << entry.path();
}

TEST_F(ImageCommand, WhatAPersonOpensAnswersForTheInstaller) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  ASSERT_NE(made("Sample.squashfs"), "");
  const std::string launcher = unpacked("Sample.squashfs") + "/Install Sample";
  for (const char* question : {"--help", "--version"}) {
    EXPECT_EQ(runCommand({launcher, question}, {.environment = environment_}).status, 0);
    EXPECT_EQ(started(), std::string(question) + "\n");
  }
}

TEST_F(ImageCommand, TheDesktopEntryFindsItsMedium) {
  for (const char* program : {"mksquashfs", "gio", "desktop-file-validate"})
    if (!programExists(program)) GTEST_SKIP() << program << " is not installed";
  ASSERT_NE(made("Sample.squashfs"), "");
  const std::string medium = unpacked("Sample.squashfs");
  const std::string entry = medium + "/Install Sample.desktop";
  EXPECT_EQ(runCommand({"desktop-file-validate", entry}).output, "");
  EXPECT_EQ(fs::status(entry).permissions() & fs::perms::owner_exec, fs::perms::owner_exec);
  // As a desktop does that tells where the entry lies, and as one that does not but works in its folder.
  fs::remove(home() + "/started");
  const auto launched =
      runCommand({"gio", "launch", entry}, {.environment = environment_, .workingFolder = medium});
  EXPECT_EQ(launched.status, 0) << launched.output;
  EXPECT_TRUE(has(started(), medium + "/.halvorn/Sample.app")) << started();
}

TEST_F(ImageCommand, TheSameProductGivesTheSameImageWheneverItIsMade) {
  for (const char* ending : {".squashfs", ".iso", ".run"}) {
    const std::string image = std::string("Sample") + ending;
    if (!hasTools(image)) GTEST_SKIP() << "the program that makes " << image << " is not installed";
    ASSERT_NE(made(image), "");
    const std::string first = contentsOf(folder_ / image);
    // Another clock, another folder for temporary files, another person's mask.
    putStarter("printf '%s\\n' \"$@\" >\"$HOME/started\"\n");
    fs::create_directories(folder_ / "elsewhere");
    std::string line = "umask 077; exec";
    for (const std::string& word : command(words(image))) line += " '" + word + "'";
    auto environment = environment_;
    environment.push_back("TMPDIR=" + folder_ / "elsewhere");
    environment.emplace_back("TZ=Pacific/Auckland");
    const auto again = runCommand({"sh", "-c", line}, {.environment = environment}, 60);
    ASSERT_EQ(again.status, 0) << again.output;
    EXPECT_TRUE(contentsOf(folder_ / image) == first) << image;
  }
}

TEST_F(ImageCommand, SumsAndSignatureHold) {
  for (const char* program : {"mksquashfs", "gpg"})
    if (!programExists(program)) GTEST_SKIP() << program << " is not installed";
  const std::string keys = folder_ / "keys";
  fs::create_directories(keys);
  fs::permissions(keys, fs::perms::owner_all);
  environment_.push_back("GNUPGHOME=" + keys);
  const auto key =
      runCommand({"gpg", "--batch", "--passphrase", "", "--quick-gen-key", "maker@example.org", "ed25519"},
                 {.environment = environment_}, 60);
  ASSERT_EQ(key.status, 0) << key.output;
  const std::string answered = made("Sample.squashfs", {"--sign", "maker@example.org"});
  EXPECT_TRUE(has(answered, "\"signature\": \"" + folder_ / "Sample.squashfs.asc\"")) << answered;
  EXPECT_EQ(runCommand({"sha256sum", "-c", "--quiet", "Sample.squashfs.sha256"},
                       {.environment = environment_, .workingFolder = folder_.path().string()})
                .status,
            0);
  const auto verified =
      runCommand({"gpg", "--verify", folder_ / "Sample.squashfs.asc", folder_ / "Sample.squashfs"},
                 {.environment = environment_});
  EXPECT_EQ(verified.status, 0) << verified.output;
  EXPECT_EQ(halvorn(words("Sample.squashfs", {"--sign", "nobody@example.org"})).status, 73);
  (void)runCommand({"gpgconf", "--kill", "all"}, {.environment = environment_});
}

TEST_F(ImageCommand, InsideTheInstallerLiesInTheProduct) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  ASSERT_NE(made("Sample.squashfs", {"--inside"}), "");
  const std::string medium = unpacked("Sample.squashfs");
  EXPECT_TRUE(
      fs::exists(medium + "/.halvorn/Sample.app/Contents/Resources/HalvornInstaller.app/Contents/Linux"));
  fs::remove(home() + "/started");
  EXPECT_EQ(runCommand({medium + "/Install Sample"}, {.environment = environment_}).status, 0);
  EXPECT_TRUE(has(started(), medium + "/.halvorn/Sample.app"));
}

TEST_F(ImageCommand, ModesAndOwnersAreTheSameForEverybody) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  fs::permissions(product() + "/Contents/Info.plist", fs::perms::owner_all | fs::perms::group_write);
  fs::permissions(product() + "/Contents/Resources/version.txt", fs::perms::owner_read);
  ASSERT_NE(made("Sample.squashfs"), "");
  const std::string listing =
      runCommand({"unsquashfs", "-lln", folder_ / "Sample.squashfs"}, {.environment = environment_}).output;
  EXPECT_TRUE(has(listing, "-rw-r--r-- 0/0")) << listing;
  EXPECT_TRUE(has(listing, "drwxr-xr-x 0/0")) << listing;
  EXPECT_TRUE(has(listing, "-rwxr-xr-x 0/0")) << listing;
  for (const char* mode : {"-rw-rw", "-rwxrwx", "-r--r--r--", "-r--------", "rws", " 1"})
    EXPECT_FALSE(has(listing, std::string("\n") + mode)) << mode << listing;
}

TEST_F(ImageCommand, AnInstallerThatStandsOnThisSystemsToolkitIsNoted) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  const CommandResult without = halvorn(words("Sample.squashfs"));
  EXPECT_EQ(without.status, 0);
  EXPECT_TRUE(has(without.output, "note: this installer brings no toolkit")) << without.output;
  fs::create_directories(installer() + "/Contents/Frameworks");
  const CommandResult with = halvorn(words("Sample.squashfs"));
  EXPECT_EQ(with.status, 0);
  EXPECT_FALSE(has(with.output, "note:")) << with.output;
}

// Else nobody could move it to the Trash or replace it.
TEST_F(ImageCommand, WhatIsCopiedFromAnyMediumCanBeWrittenByItsOwner) {
  for (const char* image : {"Sample.squashfs", "Sample.iso", "Sample.run"}) {
    if (!hasTools(image)) GTEST_SKIP() << "the program that makes " << image << " is not installed";
    ASSERT_NE(made(image), "");
    const std::string bundle = unpacked(image) + "/.halvorn/Sample.app";
    for (const auto& [path, mode] : std::map<std::string, mode_t>{
             {bundle, 0755}, {bundle + "/Contents", 0755}, {bundle + "/Contents/Info.plist", 0644}}) {
      struct stat facts {};
      ASSERT_EQ(::lstat(path.c_str(), &facts), 0);
      EXPECT_EQ(facts.st_mode & 07777U, mode) << image << " " << path;
      EXPECT_EQ(facts.st_uid, ::geteuid() == 0 ? 0U : ::geteuid()) << image << " " << path;
    }
  }
}

TEST_F(ImageCommand, WithoutWhatAPersonOpensThereIsNoImage) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  std::vector<std::string> elsewhere = words("Sample.squashfs");
  fs::create_directories(folder_ / "bin");
  fs::copy(KT_HALVORN, folder_ / "bin");
  elsewhere.insert(elsewhere.begin(), folder_ / "bin/halvorn");
  const CommandResult result = runCommand(elsewhere, {.environment = environment_});
  EXPECT_EQ(result.status, 66);
  EXPECT_TRUE(has(result.output, "no HalvornLauncher lies beside halvorn")) << result.output;
  EXPECT_FALSE(fs::exists(folder_ / "Sample.squashfs"));
}

TEST_F(ImageCommand, WhatCannotBecomeAnImageSaysWhy) {
  if (!hasTools("Sample.squashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  EXPECT_EQ(halvorn(words("Sample.zip")).status, 64);
  EXPECT_EQ(halvorn(words("Sample.squashfs", {"--inside", "--beside"})).status, 64);
  EXPECT_EQ(halvorn(words("Sample.squashfs", {"--read-me", folder_ / "none"})).status, 66);
  EXPECT_EQ(halvorn(words("none/Sample.squashfs")).status, 73);
  if (hasTools("Sample.run")) {
    EXPECT_EQ(halvorn(words("none/Sample.run")).status, 73);
    ASSERT_NE(made("Sample.run"), "");
    EXPECT_EQ(runCommand({folder_ / "Sample.run", "--unpack", folder_ / "NAS"}).status, 69)
        << "over what is there already";
  }
  putStarter("echo broken; exit 1\n");
  const CommandResult broken = halvorn(words("Sample.squashfs"));
  EXPECT_EQ(broken.status, 1);
  EXPECT_TRUE(has(broken.output, "its installer does not start: broken")) << broken.output;
  makeProduct({.signature = std::nullopt});
  EXPECT_EQ(halvorn(words("Sample.squashfs")).status, 1);
  environment_.front() = "PATH=" + folder_ / "nothing";
  const CommandResult without = halvorn(words("Sample.squashfs"));
  EXPECT_EQ(without.status, 69);
  EXPECT_TRUE(has(without.output, "sudo apt install squashfs-tools")) << without.output;
  const CommandResult withoutZstd = halvorn(words("Sample.run"));
  EXPECT_EQ(withoutZstd.status, 69);
  EXPECT_TRUE(has(withoutZstd.output, "sudo apt install zstd")) << withoutZstd.output;
}

}  // namespace
}  // namespace halvorn
