// Whether the table for people says what the desktops tell.
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "Platform/processes/linux/wayland/ClientSockets.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "tests/processes/adapter/LiveFixture.h"
#include "tests/support/DesktopEnvironment.h"

namespace halvorn {
namespace {

using Row = std::map<std::string, std::string>;  // "yes" or "no" by desktop

std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream stream(line);
  for (std::string cell; std::getline(stream, cell, '|');) {
    const std::size_t first = cell.find_first_not_of(' ');
    const std::size_t last = cell.find_last_not_of(' ');
    cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
  }
  if (!cells.empty()) cells.erase(cells.begin());
  return cells;
}

std::map<std::string, Row> tableForPeople() {
  std::map<std::string, Row> table;
  std::vector<std::string> desktops;
  std::ifstream page(KT_SOURCE_DIR "/docs/desktops.md");
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("|") || line.starts_with("|-")) continue;
    const auto cells = cellsOf(line);
    if (desktops.empty()) {
      desktops = cells;
      continue;
    }
    for (std::size_t i = 1; i < cells.size(); ++i) table[cells[0]][desktops.at(i)] = cells[i];
  }
  return table;
}

struct Asked {
  const char* name;
  DesktopParts parts;

  friend void PrintTo(const Asked& asked, std::ostream* stream) { *stream << asked.name; }
};

class DesktopTable : public LiveFixture, public testing::WithParamInterface<Asked> {
 protected:
  void SetUp() override { startDesktopAndWatch(GetParam().parts); }
};
INSTANTIATE_TEST_SUITE_P(
    Desktops, DesktopTable,
    testing::Values(Asked{"X11", {.bus = false}},
                    Asked{"Wayland: sway", {.bus = false, .compositor = Compositor::Sway}},
                    Asked{"Wayland: KWin", {.compositor = Compositor::KWin}},
                    Asked{"Wayland: GNOME", {.compositor = Compositor::Gnome}},
                    Asked{"Wayland: weston", {.bus = false, .compositor = Compositor::Weston}}),
    [](const auto& parameters) { return std::string("Desktop") + std::to_string(parameters.index); });

TEST_P(DesktopTable, SaysWhatTheDesktopTells) {
  ChildProcess& editor = startBundle("Editor", "EDIT", {"--windows", "1", "--ignores-close"});
  ChildProcess& mail = startBundle("Mail", "MAIL", {"--windows", "1", "--ignores-close"});
  ASSERT_TRUE(mail.waitForOutput("shown", kTestPatience) && editor.waitForOutput("shown", kTestPatience));
  const auto held = live->running.withPid(editor.pid());
  ASSERT_NE(held, nullptr);
  WindowSystem& windows = live->windows;
  const auto owns = [&] {
    const auto owners = windows.owners();
    return std::find(owners.begin(), owners.end(), editor.pid()) != owners.end();
  };
  const double patience = windows.tellsActiveWindow() ? kTestPatience : 0.5;
  const auto isSoon = [&](const auto& condition) { return eventually(condition, patience); };

  std::map<std::string, bool> told;
  told["every window"] = isSoon([&] { return windows.tellsAllWindows(); });
  told["whose window it is"] = isSoon(owns);
  windows.activate(held->hold, BringForward::AllWindows);
  told["programs put in front"] = isSoon([&] { return windows.activeOwner() == editor.pid(); });
  told["the front program"] = windows.activeOwner().has_value();
  told["windows asked to close"] = windows.closeWindows(held->hold) == 1;
  EXPECT_EQ(told["windows asked to close"], editor.waitForOutput("close", patience));
  const ClientSockets clients(desktop->waylandSocket(), live->procFiles);
  told["who is on this desktop"] = clients.look().of(editor.pid()) == Membership::Here;
  PosixClock clock;
  LinuxDesktopFacts facts(environmentOf(*desktop), std::nullopt, live->loop, clock);
  told["changes of the clipboard"] = facts.clipboardChangeCount().has_value();
  told["a window that fills the screen"] =
      facts.installMenuBarHandler([](const MenuBarEvent&) { return EventAnswer::Handled; });
  const auto isTimed = [&] {
    live->loop.runFor(0.02);
    return facts.nanosecondsSinceLastInput().has_value();
  };
  told["time since the last input"] = eventually(isTimed, NotifiedIdleTime::kWait * 2);

  const auto table = tableForPeople();
  EXPECT_EQ(table.size(), told.size());
  for (const auto& [what, isTold] : told) {
    ASSERT_TRUE(table.contains(what)) << what;
    EXPECT_EQ(table.at(what).at(GetParam().name), isTold ? "yes" : "no") << what;
  }
}

}  // namespace
}  // namespace halvorn
