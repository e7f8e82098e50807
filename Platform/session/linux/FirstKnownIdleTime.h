// The answer of the first source that has one: the display server, else the session manager.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "Platform/session/IdleTime.h"

namespace halvorn {

class FirstKnownIdleTime : public IdleTime {
 public:
  // The sources must outlive this object.
  explicit FirstKnownIdleTime(std::vector<std::reference_wrapper<IdleTime>> sources)
      : sources_(std::move(sources)) {}

  std::optional<std::int64_t> nanosecondsSinceLastInput() override {
    for (IdleTime& source : sources_) {
      if (const auto answer = source.nanosecondsSinceLastInput()) return answer;
    }
    return std::nullopt;
  }

 private:
  std::vector<std::reference_wrapper<IdleTime>> sources_;
};

}  // namespace halvorn
