// kt as people and scripts call it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/ToneFile.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class KtCommand : public testing::Test {
 protected:
  CommandResult kt(const std::vector<std::string>& words) const {
    std::vector<std::string> command = {KT_COMMAND};
    command.insert(command.end(), words.begin(), words.end());
    return runCommand(command, {.environment = environment});
  }
  std::string outputOf(const std::vector<std::string>& words) const {
    const CommandResult result = kt(words);
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
  }

  const TemporaryFolder folder;
  std::vector<std::string> environment = {"PATH=/usr/bin:/bin", "HOME=" + folder.path().string(),
                                          "LANG=C.UTF-8"};
};

TEST_F(KtCommand, VersionsAreCompared) {
  EXPECT_EQ(outputOf({"version", "2.1b3", "2.1"}), "older\n");
  EXPECT_EQ(outputOf({"version", "2.10", "2.9"}), "newer\n");
  EXPECT_EQ(outputOf({"--json", "version", "1.02", "1.2"}), "{\"order\": \"same\"}\n");
}

TEST_F(KtCommand, TextsAreChanged) {
  EXPECT_EQ(outputOf({"text", "split", "a\r\nb"}), "a\nb\n");
  EXPECT_EQ(outputOf({"text", "percent", "a b"}), "a%20b\n");
  EXPECT_EQ(outputOf({"text", "html", "a&lt;b"}), "a<b\n");
  EXPECT_EQ(outputOf({"text", "replace", "a1b", "[0-9]", "<$0>"}), "a<1>b\n");
  EXPECT_EQ(outputOf({"text", "trim", " a "}), "a\n");
  EXPECT_EQ(outputOf({"text", "escape", "--", "--json"}), "--json\n");
}

TEST_F(KtCommand, AFilesEncodingIsFound) {
  const std::string file = putFile(folder.path() / "latin", "caf\xE9 au lait, d\xE9j\xE0 vu");
  EXPECT_EQ(outputOf({"text", "detect", file}), "caf\u00E9 au lait, d\u00E9j\u00E0 vu\n");
  EXPECT_EQ(kt({"text", "detect", file + "-missing"}).status, 1);
}

TEST_F(KtCommand, JsonEscapesWhatItMust) {
  EXPECT_EQ(outputOf({"--json", "text", "trim", "a\"b\\c\td"}), "{\"text\": \"a\\\"b\\\\c\\u0009d\"}\n");
  EXPECT_EQ(outputOf({"--json", "text", "trim", "\xF0\x9F\x98\x80"}), "{\"text\": \"\xF0\x9F\x98\x80\"}\n");
}

TEST_F(KtCommand, AScriptIsEndedAtItsLimit) {
  const std::string script =
      putFile(folder.path() / "script", "#!/bin/sh\necho begun $1\nexec sleep 600\n", Executable::Yes);
  EXPECT_NE(outputOf({"script", script, "word", "--limit", "0.5"}).find("begun word\n"), std::string::npos);
}

TEST_F(KtCommand, WordsThatMakeNoCommandAreRefused) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{}, {"nothing"}, {"version", "1"}, {"text", "shout", "a"}, {"color", "1"}}) {
    EXPECT_EQ(kt(words).status, 64);
  }
  EXPECT_EQ(kt({"--help"}).status, 0);
  EXPECT_EQ(kt({"quit", "NONE"}).status, 1);
  EXPECT_EQ(kt({"front"}).status, 1);
}

TEST_F(KtCommand, WithoutADesktopItsFactsAreUnknown) {
  const std::string facts = outputOf({"--json", "desktop"});
  EXPECT_NE(facts.find("\"clipboardChanges\": null"), std::string::npos) << facts;
  EXPECT_NE(facts.find("\"dark\": false"), std::string::npos) << facts;
  EXPECT_EQ(outputOf({"color", "1", "0", "0", "0", "0", "1"}), "1\t0\t0\n");
}

class KtWithSound : public KtCommand {
 protected:
  void SetUp() override {
    if (const auto missing = SoundServer::missing()) GTEST_SKIP() << *missing;
    server.emplace();
    fs::create_directories(folder.path() / "sounds");
    putFile(folder.path() / "sounds/Tone.wav", waveFile());
    environment = {"PATH=/usr/bin:/bin", "LANG=C.UTF-8", "XDG_DATA_HOME=" + folder.path().string()};
    for (const char* name :
         {"HOME", "PULSE_SERVER", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "ASAN_OPTIONS", "UBSAN_OPTIONS"}) {
      if (const char* value = std::getenv(name)) environment.push_back(std::string(name) + "=" + value);
    }
  }
  std::optional<SoundServer> server;
};

TEST_F(KtWithSound, ASoundPlaysOnTheNamedDeviceAlone) {
  SoundRecording first(*server, "lab_a");
  SoundRecording second(*server, "lab_b");
  EXPECT_EQ(outputOf({"sound", "Tone", "--device", "lab_b"}), "");
  EXPECT_GT(second.peak(), 0.4);
  EXPECT_EQ(first.peak(), 0.0);
  EXPECT_EQ(outputOf({"sound", "Tone"}), "");
  EXPECT_GT(first.peak(), 0.4);
}

TEST_F(KtWithSound, DevicesAreListedAndAMissingOneIsSaid) {
  const std::string devices = outputOf({"sound", "--devices"});
  EXPECT_NE(devices.find("\tlab_a\n"), std::string::npos) << devices;
  EXPECT_NE(devices.find("\tlab_b\n"), std::string::npos) << devices;
  const CommandResult result = kt({"sound", "Tone", "--device", "nowhere"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(kt({"sound", "NoSuchSound"}).status, 1);
}

class KtOnDesktop : public KtCommand {
 protected:
  void SetUp() override {
    if (const auto missing = Desktop::missing()) GTEST_SKIP() << *missing;
    desktop.emplace();
    environment = desktop->environment();
    window = std::make_unique<ChildProcess>(std::vector<std::string>{KT_WINDOW_PROBE},
                                            ChildOptions{.environment = environment});
    ASSERT_EQ(window->readLine(kTestPatience), "ready");
    window->writeInput("front\n");
    ASSERT_EQ(window->readLine(kTestPatience), "done");
  }
  std::optional<Desktop> desktop;
  std::unique_ptr<ChildProcess> window;
};

TEST_F(KtOnDesktop, AProgramIsListedAndInFront) {
  const std::string pid = std::to_string(window->pid());
  EXPECT_NE(outputOf({"ps"}).find(pid + "\tsession_window_probe\t"), std::string::npos);
  EXPECT_TRUE(eventually([&] { return kt({"front"}).output.rfind(pid + "\t", 0) == 0; }));
  EXPECT_NE(outputOf({"--json", "front"}).find("\"pid\": " + pid + ", "), std::string::npos);
  EXPECT_NE(outputOf({"--json", "front"}).find("\"hidden\": false, "), std::string::npos);
}

TEST_F(KtOnDesktop, AnEndIsToldWhileItIsWatched) {
  ChildProcess watching({KT_COMMAND, "ps", "--watch"}, {.environment = environment});
  ASSERT_TRUE(watching.waitForOutput(std::to_string(window->pid()) + "\t", kTestPatience));
  window->end();
  EXPECT_TRUE(watching.waitForOutput("ended\n", kTestPatience)) << watching.output();
}

}  // namespace
}  // namespace halvorn
