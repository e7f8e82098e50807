// Starts a program again whenever it ends.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace halvorn {

class Respawner {
 public:
  Respawner(std::vector<std::string> program, std::vector<std::string> environment)
      : thread_([this, program = std::move(program), environment = std::move(environment)] {
          while (!isOver_) {
            ChildProcess child(program, {.environment = environment});
            while (!isOver_ && child.isRunning()) pauseBriefly();
          }
        }) {}
  ~Respawner() {
    isOver_ = true;
    thread_.join();
  }
  Respawner(const Respawner&) = delete;
  Respawner& operator=(const Respawner&) = delete;

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

}  // namespace halvorn
