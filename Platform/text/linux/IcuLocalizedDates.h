// Dates in the conventions of the locale, from ICU.
#pragma once

#include "Platform/text/LocalizedDates.h"

namespace halvorn {

class IcuLocalizedDates : public LocalizedDates {
 public:
  // In the locale of the environment: LC_ALL, else LC_TIME, else LANG.
  IcuLocalizedDates();
  // In that locale ("de_DE.UTF-8").
  explicit IcuLocalizedDates(const Text& locale);

  OptionalText shortDate(Date moment) const override;

 private:
  Text locale_;
};

}  // namespace halvorn
