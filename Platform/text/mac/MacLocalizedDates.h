// Dates by the system's own formatter, in the person's locale and time zone.
#pragma once

#include "Platform/text/LocalizedDates.h"

namespace halvorn {

class MacLocalizedDates : public LocalizedDates {
 public:
  [[nodiscard]] OptionalText shortDate(Date moment) const override;
};

}  // namespace halvorn
