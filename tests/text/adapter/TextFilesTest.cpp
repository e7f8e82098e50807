// Files of unknown encoding, pages and files that are none, with the real detector and the real file system.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/files/posix/PosixFileHandles.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

const fs::path kData = fs::path(KT_SOURCE_DIR) / "tests/data/text";

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

class TextFiles : public testing::Test {
 protected:
  OptionalText read(const fs::path& path) const {
    return stringWithBestEncodingFromFile(path.string(), files_, codecs_, unicode_);
  }
  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
  }

  PosixFileManager files_;
  PosixFileHandles handles_;
  IcuTextCodecs codecs_;
  IcuUnicode unicode_;
  TemporaryFolder folder_;
};

TEST_F(TextFiles, EveryFileOfTheCorpusReadsAsItsReference) {
  int count = 0;
  for (const auto& entry : fs::directory_iterator(kData / "corpus")) {
    const std::string name = entry.path().filename().string();
    const std::string work = name.substr(0, name.find('.'));
    const Text reference = bytesOf(kData / "corpus" / (work + ".utf8.txt"));
    const OptionalText text = read(entry.path());
    ASSERT_TRUE(text.has_value()) << name;
    EXPECT_EQ(withLineSeparator(*text, "\n"), reference) << name;
    ++count;
  }
  EXPECT_EQ(count, 35);
}

TEST_F(TextFiles, MarksAreSeenByThemselves) {
  const std::pair<const char*, TextEncoding> rows[] = {
      {"erlkoenig.utf8-mark.txt", TextEncodings::utf8},
      {"erlkoenig.utf16be-mark.txt", TextEncodings::utf16BigEndian},
      {"erlkoenig.utf16le-mark.txt", TextEncodings::utf16LittleEndian},
      {"erlkoenig.utf32be-mark.txt", TextEncodings::utf32BigEndian},
      {"erlkoenig.utf32le-mark.txt", TextEncodings::utf32LittleEndian},
      {"erlkoenig.utf8.txt", 77},
      {"erlkoenig.latin1.txt", 77},
  };
  for (const auto& [name, encoding] : rows) {
    EXPECT_EQ(explicitEncodingOfFile((kData / "corpus" / name).string(), 77, files_), encoding) << name;
  }
}

TEST_F(TextFiles, EveryPageReadsInTheEncodingThatIsExpected) {
  std::ifstream list(kData / "pages/expected.txt");
  int count = 0;
  for (std::string line; std::getline(list, line);) {
    if (line.starts_with('#')) continue;
    const std::string name = line.substr(0, line.find(';'));
    const auto encoding = static_cast<TextEncoding>(std::stoul(line.substr(line.find(';') + 1)));
    const std::string bytes = bytesOf(kData / "pages" / name);
    const RecordingLog log;
    const auto expected = codecs_.decode(bytes, encoding);
    ASSERT_TRUE(expected.has_value()) << name;
    EXPECT_EQ(stringWithHTML(bytes, codecs_, log), *expected) << line;
    EXPECT_EQ(log.lines(), encoding == TextEncodings::unicode ? Lines{"no HTML in Latin"} : Lines()) << name;
    ++count;
  }
  EXPECT_EQ(count, 10);
}

TEST_F(TextFiles, ShortAndPlainFilesReadAsTheyAre) {
  for (const char* const text :
       {"a", "Hello world", "key = value\n", "if (a < b) { return x[3]; }\n", "\n", "1,2,3;4"}) {
    write("plain", text);
    EXPECT_EQ(read(folder_ / "plain"), Text(text)) << text;
  }
}

TEST_F(TextFiles, FoldersPipesDevicesAndLockedFilesHaveNoText) {
  fs::create_directory(folder_ / "folder");
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  for (const std::string& path :
       {folder_ / "folder", folder_ / "pipe", folder_ / "missing", std::string("/dev/zero"),
        std::string("/dev/full"), std::string("/proc/self/mem"), std::string()}) {
    EXPECT_EQ(read(path), std::nullopt) << path;
    EXPECT_EQ(explicitEncodingOfFile(path, 77, files_), 77u) << path;
  }
  write("locked", "text");
  fs::permissions(folder_ / "locked", fs::perms::none);
  const OrdinaryUser ordinaryUser(folder_.path());
  EXPECT_EQ(read(folder_ / "locked"), std::nullopt);
  EXPECT_EQ(explicitEncodingOfFile(folder_ / "locked", 77, files_), 77u);
}

TEST_F(TextFiles, AFileBeyondTheLimitHasNoText) {
  write("huge", "");
  fs::resize_file(folder_ / "huge", kLargestTextFile + 1);  // takes no space
  EXPECT_EQ(read(folder_ / "huge"), std::nullopt);
}

TEST_F(TextFiles, AFileThatGrowsWhileItIsReadIsReadAsFarAsItGoes) {
  write("growing", std::string(1000, 'a'));
  std::atomic<bool> isDone = false;
  std::thread writer([&] {
    std::ofstream file(folder_ / "growing", std::ios::binary | std::ios::app);
    for (int i = 0; i < 4000 && !isDone; ++i) file << std::string(997, 'a') << std::flush;
  });
  for (int i = 0; i < 20; ++i) {
    const OptionalText text = read(folder_ / "growing");
    EXPECT_TRUE(!text || text->units().find_first_not_of(u'a') == std::u16string_view::npos);
  }
  isDone = true;
  writer.join();
  EXPECT_TRUE(read(folder_ / "growing").has_value());
}

TEST_F(TextFiles, AppendingCreatesAMissingFileAndAppendsOnLaterCalls) {
  const Text path = folder_ / "log";
  EXPECT_TRUE(appendToFile("grüß ", path, TextEncodings::latin1, files_, handles_, codecs_));
  EXPECT_TRUE(appendToFile("Gott", path, TextEncodings::latin1, files_, handles_, codecs_));
  EXPECT_EQ(bytesOf(folder_ / "log"), "gr\xFC\xDF Gott");
}

TEST_F(TextFiles, AFileMadeByAppendingHasTheModeThatNewFilesHave) {
  const auto modeUnder = [&](mode_t mask) {
    const std::string path = folder_ / ("mode" + std::to_string(mask));
    const mode_t before = ::umask(mask);
    EXPECT_TRUE(appendToFile("a", path, TextEncodings::utf8, files_, handles_, codecs_));
    ::umask(before);
    return fs::status(path).permissions();
  };
  EXPECT_EQ(modeUnder(022), fs::perms(0644));
  EXPECT_EQ(modeUnder(007), fs::perms(0660));
  EXPECT_EQ(modeUnder(077), fs::perms(0600));
}

TEST_F(TextFiles, AppendingWhatTheEncodingLacksLeavesTheFileAsItWas) {
  write("log", "before");
  EXPECT_FALSE(appendToFile("日本", folder_ / "log", TextEncodings::latin1, files_, handles_, codecs_));
  EXPECT_EQ(bytesOf(folder_ / "log"), "before");
}

TEST_F(TextFiles, AppendingToWhatCannotBeWrittenReturnsFalse) {
  fs::create_directory(folder_ / "folder");
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const auto append = [&](const std::string& path) {
    return appendToFile("a", path, TextEncodings::utf8, files_, handles_, codecs_);
  };
  EXPECT_FALSE(append(folder_ / "folder"));
  EXPECT_FALSE(append(folder_ / "pipe"));
  EXPECT_FALSE(append(folder_ / "missing/file"));
  EXPECT_FALSE(append("/dev/full"));
  EXPECT_FALSE(append(""));
  write("locked", "before");
  fs::permissions(folder_ / "locked", fs::perms::owner_read);
  const OrdinaryUser ordinaryUser(folder_.path());
  EXPECT_FALSE(append(folder_ / "locked"));
  EXPECT_EQ(bytesOf(folder_ / "locked"), "before");
}

}  // namespace
}  // namespace halvorn
