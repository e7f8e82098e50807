#include "Platform/text/linux/IcuLocalizedSizes.h"

#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>

#include <string>

#include "Core/Format.h"

namespace halvorn {
namespace {

struct Unit {
  double bytes;
  icu::MeasureUnit measure;
  const char* symbol;  // where the language has none
};

// As files are counted on the desktop: by thousands.
Unit unitFor(std::uint64_t whole) {
  if (whole >= 1'000'000'000U) return {1e9, icu::MeasureUnit::getGigabyte(), "GB"};
  if (whole >= 1'000'000U) return {1e6, icu::MeasureUnit::getMegabyte(), "MB"};
  return {1e3, icu::MeasureUnit::getKilobyte(), "kB"};
}

Text shown(const icu::number::LocalizedNumberFormatter& formatter, double value, const Text& otherwise) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString text = formatter.formatDouble(value, status).toString(status);
  if (U_FAILURE(status) != 0) return otherwise;
  return Text(std::u16string(text.getBuffer(), static_cast<std::size_t>(text.length())));
}

}  // namespace

LocalizedSizes::Part IcuLocalizedSizes::partOf(std::uint64_t bytes, std::uint64_t whole) const {
  constexpr double kWithoutFraction = 100.0;
  const Unit unit = unitFor(whole);
  const double all = static_cast<double>(whole) / unit.bytes;
  const double some = static_cast<double>(bytes) / unit.bytes;
  const int digits = all < kWithoutFraction ? 1 : 0;
  const auto plain =
      icu::number::NumberFormatter::withLocale(icu::Locale::createCanonical(language_.bytes().c_str()))
          .precision(icu::number::Precision::fixedFraction(digits));
  const auto named = plain.unit(unit.measure).unitWidth(UNUM_UNIT_WIDTH_SHORT);
  return {shown(plain, some, format("%1.1f", some)),
          shown(named, all, format("%1.1f %s", all, Text(unit.symbol)))};
}

Text IcuLocalizedSizes::number(std::uint64_t number) const {
  const auto plain =
      icu::number::NumberFormatter::withLocale(icu::Locale::createCanonical(language_.bytes().c_str()));
  return shown(plain, static_cast<double>(number), format("%d", static_cast<long long>(number)));
}

}  // namespace halvorn
