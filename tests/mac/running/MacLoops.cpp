// The system's run loop.
#include "Platform/running/mac/MacMainThread.h"
#include "Platform/running/mac/MacRunLoop.h"
#include "tests/mac/MacLoop.h"
#include "tests/running/contract/Loops.h"

namespace halvorn {
namespace {

struct MacLoop : Loop {
  RunLoop& sources() override { return loop; }
  MainThread& mainThread() override { return tasks; }
  bool runUntil(const std::function<bool()>& condition, double seconds) override {
    return MacRunLoop::runUntil(condition, seconds);
  }
  MacPool pool;
  MacRunLoop loop;
  MacMainThread tasks;
};

std::unique_ptr<Loop> make() { return std::make_unique<MacLoop>(); }

}  // namespace

const std::vector<NamedLoop>& loops() {
  static const std::vector<NamedLoop> all = {{"Mac", make}};
  return all;
}

}  // namespace halvorn
