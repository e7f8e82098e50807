#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {

LiveFixture::LiveFixture() = default;
LiveFixture::~LiveFixture() = default;

void LiveFixture::startDesktop(const DesktopParts& parts) {
  if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  desktop = std::make_unique<Desktop>(parts);
}

void LiveFixture::watch(LiveOptions options, Table table) {
  if (table == Table::Own) options.table = own.path();
  live = std::make_unique<LiveProcesses>(options);
}

void LiveFixture::startDesktopAndWatch(const DesktopParts& parts) {
  startDesktop(parts);
  if (!desktop) return;
  watch({.display = desktop->displayName(),
         .waylandSocket = desktop->waylandSocket(),
         .bus = desktop->busAddress()});
}

ChildProcess& LiveFixture::launch(const Strings& arguments, const ChildOptions& options) {
  children.emplace_back(arguments, options);
  own.add(children.back().pid());
  return children.back();
}

ChildProcess& LiveFixture::launch(const Strings& arguments) {
  return launch(arguments, {.environment = desktop ? desktop->environment() : Strings{}});
}

ChildProcess& LiveFixture::start(const std::string& program, const Strings& habits) {
  Strings arguments = {program};
  arguments.insert(arguments.end(), habits.begin(), habits.end());
  ChildProcess& started = launch(arguments);
  EXPECT_EQ(started.readLine(kTestPatience), "ready") << started.output();
  return started;
}

ChildProcess& LiveFixture::startBundle(const std::string& name, const std::string& code,
                                       const Strings& habits) {
  return start(bundleProgram(name, code), habits);
}

std::string LiveFixture::bundleProgram(const std::string& name, const std::string& code) {
  ZooBundle bundle{.name = name, .info = {{"CFBundleIdentifier", "org.example." + name}}};
  if (!code.empty()) bundle.info["CFBundleSignature"] = code;
  return makeBundle(folder.path(), bundle);
}

KTProcessPointer LiveFixture::process(const ChildProcess& child) {
  KTProcessPointer result;
  EXPECT_TRUE(live->settles([&] { return (result = live->listed(child.pid())) != nullptr; })) << "not listed";
  return result;
}

void LiveFixture::awaitWindows(const ChildProcess& child, std::size_t windows) {
  EXPECT_TRUE(eventually([&] {
    const auto held = live->running.withPid(child.pid());
    return held && live->windows.windowsOf(held->hold).size() == windows;
  })) << "the windows are not known";
}

}  // namespace halvorn
