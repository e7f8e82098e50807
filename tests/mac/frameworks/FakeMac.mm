#include "tests/mac/frameworks/FakeMac.h"

#include <algorithm>

namespace fakemac {

State& state() {
  static State now;
  return now;
}

void reset() {
  state() = State();
  start({.name = "Installer", .signature = 0x496E5374, .path = "/Applications/Installer.app", .pid = 100});
  state().happened.clear();
}

Application& start(Application application) {
  auto& all = state().applications;
  if (application.pid == 0) {
    application.pid = 100;
    for (const Application& other : all) application.pid = std::max(application.pid, other.pid + 1);
  }
  // The first numbers are constants of the Process Manager.
  application.number = {0, static_cast<std::uint32_t>(0x1001 + all.size())};
  all.push_back(std::move(application));
  state().happened.push_back(5);
  return all.back();
}

void end(Application& application) {
  application.hasEnded = true;
  if (state().front == application.number) state().front.reset();
  state().happened.push_back(6);
}

void serve() {
  while (!state().happened.empty()) {
    const std::uint32_t kind = state().happened.front();
    state().happened.pop_front();
    static_cast<void>(deliver(0x6170706C, kind));
  }
}

Application* withPid(std::int32_t pid) {
  for (Application& application : state().applications) {
    if (application.pid == pid && !application.hasEnded) return &application;
  }
  return nullptr;
}

}  // namespace fakemac
