#include "tests/support/Hands.h"

#include <stdexcept>

namespace halvorn {
namespace {

std::vector<std::string> commandFor(Compositor compositor) {
  const std::string programs = KT_BINARY_DIR "/tests/";
  switch (compositor) {
    case Compositor::Sway:
      return {programs + "kt_wayland_pointer", "1280", "800"};
    case Compositor::KWin:
      return {programs + "kt_kwin_hands"};
    case Compositor::Gnome:
      return {programs + "kt_gnome_hands"};
    case Compositor::None:
    case Compositor::Weston:
      break;
  }
  return {};
}

}  // namespace

std::unique_ptr<ChildProcess> startedHands(const Desktop& desktop) {
  const std::vector<std::string> command = commandFor(desktop.kind());
  if (command.empty()) return nullptr;
  auto hands = std::make_unique<ChildProcess>(command, ChildOptions{.environment = desktop.environment()});
  if (hands->readLine(kTestPatience) != "ready") throw std::runtime_error("no hands: " + hands->output());
  return hands;
}

}  // namespace halvorn
