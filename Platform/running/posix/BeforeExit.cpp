#include "Platform/running/posix/BeforeExit.h"

#include <cstdlib>
#include <utility>

namespace halvorn {
namespace {

// What exit() calls gets no argument, so the task stands outside of any object.
const std::function<void()>* waiting = nullptr;

void doWhatWaits() {
  if (const auto* task = std::exchange(waiting, nullptr)) (*task)();
}

}  // namespace

BeforeExit::BeforeExit(std::function<void()> task) : task_(std::move(task)) {
  // Calls cannot be taken back; one that comes when nothing waits does nothing.
  if (std::atexit(doWhatWaits) == 0) waiting = &task_;
}

BeforeExit::~BeforeExit() { waiting = nullptr; }

}  // namespace halvorn
