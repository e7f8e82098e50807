// Dates cannot be shown.
#pragma once

#include "Platform/text/LocalizedDates.h"

namespace halvorn {

class NullLocalizedDates : public LocalizedDates {
 public:
  OptionalText shortDate(Date) const override { return std::nullopt; }
};

}  // namespace halvorn
