#include "Platform/text/mac/MacLocalizedDates.h"

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

OptionalText MacLocalizedDates::shortDate(Date moment) const {
  return answered(OptionalText(), [&] {
    NSDateFormatter* const formatter = [[[NSDateFormatter alloc] init] autorelease];
    [formatter setDateStyle:NSDateFormatterShortStyle];
    [formatter setTimeStyle:NSDateFormatterNoStyle];
    return textOf([formatter stringFromDate:[NSDate dateWithTimeIntervalSince1970:moment.secondsSince1970]]);
  });
}

}  // namespace halvorn
