// halvorn, called as people and scripts call it, for a person of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/maker/adapter/StatusTable.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SampleProduct.h"
#include "tests/support/SharedApplications.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

class HalvornFixture : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto problem = stayOutOfSharedApplications(KT_BINARY_DIR)) GTEST_SKIP() << *problem;
    std::filesystem::create_directories(applications());
    std::filesystem::create_directories(image());
    environment_ = {"PATH=/usr/bin:/bin", "HOME=" + home(), "LANG=C.UTF-8", "HALVORN_AS_ROOT=container"};
  }

  [[nodiscard]] std::string home() const { return folder_ / "home"; }
  [[nodiscard]] std::string applications() const { return home() + "/Applications"; }
  [[nodiscard]] std::string image() const { return folder_ / "NAS"; }
  [[nodiscard]] std::string product() const { return image() + "/Sample.app"; }
  [[nodiscard]] std::string destination() const { return applications() + "/Sample.app"; }
  // A product that ends at once when it is launched, and leaves a file.
  void makeProduct(SampleProduct product = {}, const std::string& in = {}) {
    product.program = putFile(folder_ / "program", "#!/bin/sh\necho >>\"$HOME/launched\"\n", Executable::Yes);
    (void)makeSampleProduct(in.empty() ? image() : in, product);
  }
  [[nodiscard]] bool wasLaunched() const {
    return eventually([&] { return std::filesystem::exists(home() + "/launched"); });
  }

  [[nodiscard]] std::vector<std::string> command(const std::vector<std::string>& words) const {
    std::vector<std::string> whole = {KT_HALVORN};
    whole.insert(whole.end(), words.begin(), words.end());
    return whole;
  }
  [[nodiscard]] CommandResult halvorn(const std::vector<std::string>& words) const {
    const CommandResult result = runCommand(command(words), {.environment = environment_}, 60);
    EXPECT_TRUE(isDocumented(words, result.status)) << result.status << " is not in the manual page";
    return result;
  }
  // The answer with --json; it must be as the schema says, and end as `status` says.
  [[nodiscard]] std::string answer(std::vector<std::string> words, const std::string& schema,
                                   int status = 0) const {
    words.insert(words.begin(), "--json");
    // The answers alone; what is logged goes elsewhere.
    std::vector<std::string> whole = command(words);
    whole.insert(whole.begin(), {"sh", "-c", "exec \"$@\" 2>\"$0\"", folder_ / "complaints"});
    const CommandResult result = runCommand(whole, {.environment = environment_}, 60);
    EXPECT_EQ(result.status, status) << result.output;
    EXPECT_TRUE(isDocumented(words, status)) << status << " is not in the manual page";
    EXPECT_EQ(problemsIn(result.output, schema), "") << result.output;
    return result.output;
  }
  [[nodiscard]] std::string problemsIn(const std::string& answers, const std::string& schema) const {
    return problemsInAnswers(answers, schema, folder_ / "answers");
  }

  // Makes the copy that is installed one that no Trash takes: as a mount of its own for the administrator, who could
  // make a Trash anywhere.
  void makeUntrashable() {
    std::filesystem::create_directories(destination());
    putFile(home() + "/.local/share/Trash", "a file where the Trash would be");
    if (::geteuid() != 0) return;
    ASSERT_EQ(::mount("tmpfs", destination().c_str(), "tmpfs", 0, ""), 0);
    mounted_ = destination();
  }
  void TearDown() override {
    if (!mounted_.empty()) {
      EXPECT_EQ(::umount(mounted_.c_str()), 0);
    }
  }

  std::string mounted_;
  const TemporaryFolder folder_;
  std::vector<std::string> environment_;
};

// Whether the text stands in the other one.
inline bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace halvorn
