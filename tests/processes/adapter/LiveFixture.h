// A session of zoo programs on a desktop of its own, and the process model that watches it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/Desktop.h"
#include "tests/support/LiveProcesses.h"
#include "tests/support/OwnProcesses.h"
#include "tests/support/ZooBundle.h"

namespace halvorn {

class LiveFixture : public testing::Test {
 protected:
  using Strings = std::vector<std::string>;

  // Skips when the machine lacks a part.
  void startDesktop(const DesktopParts& parts) {
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop = std::make_unique<Desktop>(parts);
  }
  // The processes of this test alone, or all of this user.
  enum class Table { Own, Whole };
  void watch(LiveOptions options, Table table = Table::Own) {
    if (table == Table::Own) options.table = own.path();
    live = std::make_unique<LiveProcesses>(options);
  }
  void startDesktopAndWatch(const DesktopParts& parts = {.bus = false}) {
    startDesktop(parts);
    if (!desktop) return;
    watch({.display = desktop->displayName(),
           .waylandSocket = desktop->waylandSocket(),
           .bus = desktop->busAddress()});
  }

  // As it is, without waiting for it.
  ChildProcess& launch(const Strings& arguments, const ChildOptions& options) {
    children.emplace_back(arguments, options);
    own.add(children.back().pid());
    return children.back();
  }
  ChildProcess& launch(const Strings& arguments) {
    return launch(arguments, {.environment = desktop ? desktop->environment() : Strings{}});
  }
  ChildProcess& start(const std::string& program, const Strings& habits = {}) {
    Strings arguments = {program};
    arguments.insert(arguments.end(), habits.begin(), habits.end());
    ChildProcess& started = launch(arguments);
    EXPECT_EQ(started.readLine(kTestPatience), "ready") << started.output();
    return started;
  }
  // In a bundle of that name and signature ("" declares none).
  ChildProcess& startBundle(const std::string& name, const std::string& code, const Strings& habits = {}) {
    return start(bundleProgram(name, code), habits);
  }
  std::string bundleProgram(const std::string& name, const std::string& code) {
    ZooBundle bundle{.name = name, .info = {{"CFBundleIdentifier", "org.example." + name}}};
    if (!code.empty()) bundle.info["CFBundleSignature"] = code;
    return makeBundle(folder.path(), bundle);
  }
  // The object of the child, which has to be listed.
  KTProcessPointer process(const ChildProcess& child) {
    KTProcessPointer result;
    EXPECT_TRUE(live->settles([&] { return (result = live->listed(child.pid())) != nullptr; }))
        << "not listed";
    return result;
  }
  // Until the desktop has told of that many windows of the child: it knows of them later than the child itself.
  void awaitWindows(const ChildProcess& child, std::size_t windows) {
    EXPECT_TRUE(eventually([&] {
      const auto held = live->running.withPid(child.pid());
      return held && live->windows.windowsOf(held->hold).size() == windows;
    })) << "the windows are not known";
  }
  bool isListed(const ChildProcess& child) { return live->listed(child.pid()) != nullptr; }
  [[nodiscard]] std::ptrdiff_t count(const std::string& change) const {
    return std::count(live->changes.begin(), live->changes.end(), change);
  }
  // Lets a moment pass in which the program could have done something.
  static void giveItAMoment(ChildProcess& child) { std::ignore = child.waitForOutput("(never said)", 0.25); }

  TemporaryFolder folder;
  OwnProcesses own;
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<LiveProcesses> live;
  std::deque<ChildProcess> children;
};

}  // namespace halvorn
