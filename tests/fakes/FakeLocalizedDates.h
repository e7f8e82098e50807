// Dates shown as the seconds they are asked for, so that a test sees the moment.
#pragma once

#include <vector>

#include "Core/Format.h"
#include "Platform/text/LocalizedDates.h"

namespace halvorn {

class FakeLocalizedDates : public LocalizedDates {
 public:
  OptionalText shortDate(Date moment) const override {
    asked.push_back(moment);
    if (!answers) return std::nullopt;
    return format("day of %f", moment.secondsSince1970);
  }

  bool answers = true;
  mutable std::vector<Date> asked;
};

}  // namespace halvorn
