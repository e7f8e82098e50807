#include "Platform/text/linux/IcuLocalizedDates.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace halvorn {

namespace {

Text localeOfEnvironment() {
  for (const char* const name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value && *value) return value;
  }
  return "C";
}

}  // namespace

IcuLocalizedDates::IcuLocalizedDates() : IcuLocalizedDates(localeOfEnvironment()) {}
IcuLocalizedDates::IcuLocalizedDates(const Text& locale) : locale_(locale) {}

OptionalText IcuLocalizedDates::shortDate(Date moment) const {
  const icu::Locale locale = icu::Locale::createCanonical(locale_.bytes().c_str());
  const std::unique_ptr<icu::DateFormat> formatter(
      icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
  if (!formatter) return std::nullopt;
  // The zone is asked for anew: the person may have travelled since the program started.
  formatter->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString shown;
  formatter->format(moment.secondsSince1970 * 1000.0, shown);
  return Text(std::u16string(shown.getBuffer(), static_cast<std::size_t>(shown.length())));
}

}  // namespace halvorn
