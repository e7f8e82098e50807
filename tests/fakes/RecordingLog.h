// A log that keeps its lines.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Core/Log.h"

namespace halvorn {

class RecordingLog : public Log {
 public:
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }
  std::function<void()> onLine;  // called after each line, on the thread that logs
  void clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }

 protected:
  void write(const Text& line) const override {
    {
      const std::lock_guard lock(mutex_);
      lines_.push_back(line.bytes());
    }
    if (onLine) onLine();
  }

 private:
  mutable std::mutex mutex_;
  mutable std::vector<std::string> lines_;
};

}  // namespace halvorn
