// No programs can be started.
#pragma once

#include "Platform/running/Tasks.h"

namespace halvorn {

class NullTasks : public Tasks {
 public:
  TaskLaunch launch(const Text&, const std::vector<Text>&, const Text&, const Text&) override {
    return {nullptr, "Not supported on this system"};
  }
  void launchAndForget(const Text&, const std::vector<Text>&) override {}
  std::optional<std::string> standardOutputOf(const Text&, const std::vector<Text>&) override {
    return std::nullopt;
  }
};

}  // namespace halvorn
