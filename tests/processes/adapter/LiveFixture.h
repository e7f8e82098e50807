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

  // Made and ended in one place: what the process model is made of is compiled there, and not in every test.
  LiveFixture();
  ~LiveFixture() override;

  // Skips when the machine lacks a part.
  void startDesktop(const DesktopParts& parts);
  // The processes of this test alone, or all of this user.
  enum class Table { Own, Whole };
  void watch(LiveOptions options, Table table = Table::Own);
  void startDesktopAndWatch(const DesktopParts& parts = {.bus = false});

  // As it is, without waiting for it.
  ChildProcess& launch(const Strings& arguments, const ChildOptions& options);
  ChildProcess& launch(const Strings& arguments);
  ChildProcess& start(const std::string& program, const Strings& habits = {});
  // In a bundle of that name and signature ("" declares none).
  ChildProcess& startBundle(const std::string& name, const std::string& code, const Strings& habits = {});
  std::string bundleProgram(const std::string& name, const std::string& code);
  // The object of the child, which has to be listed.
  KTProcessPointer process(const ChildProcess& child);
  // Until the desktop has told of that many windows of the child: it knows of them later than the child itself.
  void awaitWindows(const ChildProcess& child, std::size_t windows);
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
