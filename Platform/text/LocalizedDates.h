// Dates as the person reads them.
#pragma once

#include "Core/Date.h"
#include "Core/Text.h"

namespace halvorn {

class LocalizedDates {
 public:
  virtual ~LocalizedDates() = default;
  // The day of that moment in the person's time zone and locale, short style, without the time: "3/14/21",
  // "14.03.21". nullopt when the system cannot tell. Thread: any.
  [[nodiscard]] virtual OptionalText shortDate(Date moment) const = 0;
};

}  // namespace halvorn
