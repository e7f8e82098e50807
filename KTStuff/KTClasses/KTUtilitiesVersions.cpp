#include "KTStuff/KTClasses/KTUtilitiesVersions.h"

#include <chrono>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "Core/Format.h"
#include "KTStuff/KTClasses/KTUtilitiesNumericOrder.h"

namespace halvorn {

namespace {

// The stages by maturity. The blank is matched by no letter: it gives the released state its place.
constexpr std::u16string_view kDevelopmentStages = u"pdabf ";
constexpr std::int32_t kReleasedStage = 5;

struct VersionParts {
  Text base;
  std::int32_t stage = kReleasedStage;
  Text stageNumber;
};

char32_t scalarAt(std::u16string_view units, std::size_t index, std::size_t& length) {
  const char16_t first = units[index];
  length = 1;
  if (first < 0xD800 || first > 0xDBFF || index + 1 == units.size()) return first;
  const char16_t second = units[index + 1];
  if (second < 0xDC00 || second > 0xDFFF) return first;
  length = 2;
  return 0x10000 + (static_cast<char32_t>(first - 0xD800) << 10) + (second - 0xDC00);
}

// Only the first letter splits a version; a second one stays in the stage number.
VersionParts split(const Text& version, const Unicode& unicode) {
  const std::u16string_view units = version.units();
  std::size_t length = 1;
  for (std::size_t index = 0; index < units.size(); index += length) {
    if (!unicode.isLetter(scalarAt(units, index, length))) continue;
    return {version.substring(0, index), developmentStage(units[index]), version.substring(index + length)};
  }
  return {version, kReleasedStage, "0"};
}

// The number written with exactly those digits; nullopt for anything else.
std::optional<int> digitsAt(const Text& text, std::size_t start, std::size_t count) {
  int value = 0;
  for (std::size_t index = start; index < start + count; ++index) {
    const char16_t unit = text.at(index);
    if (unit < u'0' || unit > u'9') return std::nullopt;
    value = value * 10 + (unit - u'0');
  }
  return value;
}

// Midnight UTC of a day written YYYY-MM-DD.
std::optional<Date> midnightOf(const Text& day) {
  if (day.length() != 10 || day.at(4) != u'-' || day.at(7) != u'-') return std::nullopt;
  const auto year = digitsAt(day, 0, 4);
  const auto month = digitsAt(day, 5, 2);
  const auto dayOfMonth = digitsAt(day, 8, 2);
  if (!year || !month || !dayOfMonth) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*dayOfMonth))};
  if (!date.ok()) return std::nullopt;
  const auto sinceEpoch = std::chrono::sys_days(date).time_since_epoch();
  return Date{static_cast<double>(std::chrono::seconds(sinceEpoch).count())};
}

}  // namespace

std::int32_t developmentStage(char16_t character) {
  const std::size_t index = kDevelopmentStages.find(character);
  return index == std::u16string_view::npos ? 0 : static_cast<std::int32_t>(index);
}

KTUtilitiesVersions::KTUtilitiesVersions(const Bundles& bundles, const SystemFacts& systemFacts,
                                         const Unicode& unicode, const LocalizedDates& dates, const Log& log)
    : bundles_(bundles), systemFacts_(systemFacts), unicode_(unicode), dates_(dates), log_(log) {}

Text KTUtilitiesVersions::versionString() const {
  const auto dictionary = bundles_.infoDictionary(bundles_.mainBundlePath());
  if (!dictionary) return "";
  return textForKey(*dictionary, "CFBundleVersion").value_or("");
}

Text KTUtilitiesVersions::plainVersionOf(const Text& version) {
  const std::size_t end = version.units().find_first_not_of(u".0123456789");
  return end == std::u16string_view::npos ? version : version.substring(0, end);
}

Text KTUtilitiesVersions::plainVersionString() const { return plainVersionOf(versionString()); }

Ordering KTUtilitiesVersions::compareVersion(const Text& version, const Text& withVersion) const {
  const VersionParts a = split(version, unicode_);
  const VersionParts b = split(withVersion, unicode_);
  const Ordering bases = compareNumerically(a.base, b.base);
  if (bases != Ordering::Same) return bases;
  if (a.stage != b.stage) return a.stage < b.stage ? Ordering::Ascending : Ordering::Descending;
  return compareNumerically(a.stageNumber, b.stageNumber);
}

std::int32_t KTUtilitiesVersions::hexSystemVersion() const {
  return systemFacts_.packedVersion().value_or(0);
}

KTThreePartVersion KTUtilitiesVersions::threePartVersion() const {
  KTThreePartVersion version;
  if (const auto major = systemFacts_.majorVersion()) {
    version.major = static_cast<std::int16_t>(*major);
    const auto minor = systemFacts_.minorVersion();
    if (!minor) log_("cannot get minor version number");
    version.minor = static_cast<std::int16_t>(minor.value_or(0));
    const auto bugfix = systemFacts_.bugfixVersion();
    if (!bugfix) log_("cannot get bugfix version number");
    version.bugfix = static_cast<std::int16_t>(bugfix.value_or(0));
  } else if (const auto packed = systemFacts_.packedVersion()) {
    version.major = static_cast<std::int16_t>((*packed >> 12 & 0xF) * 10 + (*packed >> 8 & 0xF));
    version.minor = static_cast<std::int16_t>(*packed >> 4 & 0xF);
    version.bugfix = static_cast<std::int16_t>(*packed & 0xF);
  }
  return version;
}

std::int32_t KTUtilitiesVersions::decimalSystemVersion() {
  // KEEP: an answer of 0 is not kept; the system is asked again.
  if (decimalSystemVersion_ == 0) {
    const KTThreePartVersion version = threePartVersion();
    decimalSystemVersion_ = (version.major * 100 + version.minor) * 100 + version.bugfix;
  }
  return decimalSystemVersion_;
}

Text KTUtilitiesVersions::systemVersionString() const {
  const KTThreePartVersion version = threePartVersion();
  if (version.bugfix <= 0) return format("%d.%d", version.major, version.minor);
  return format("%d.%d.%d", version.major, version.minor, version.bugfix);
}

OptionalText KTUtilitiesVersions::localizedDateString(const Text& day) const {
  const std::optional<Date> moment = midnightOf(day);
  return moment ? dates_.shortDate(*moment) : std::nullopt;
}

// The first three round the framework's version down, the others take it as it stands.
// KEEP: pantherOrOlder is the one test of older, leopardOrNewer the one strict comparison, highSierraOrNewer
// the one threshold with a fraction.
bool KTUtilitiesVersions::pantherOrOlder() const {
  return std::floor(systemFacts_.frameworkVersion()) <= 743.0;
}
bool KTUtilitiesVersions::leopardOrNewer() const {
  return std::floor(systemFacts_.frameworkVersion()) > 824.0;
}
bool KTUtilitiesVersions::snowleopardOrNewer() const {
  return std::floor(systemFacts_.frameworkVersion()) >= 1038.0;
}
bool KTUtilitiesVersions::lionOrNewer() const { return systemFacts_.frameworkVersion() >= 1138.0; }
bool KTUtilitiesVersions::mountainLionOrNewer() const { return systemFacts_.frameworkVersion() >= 1187.0; }
bool KTUtilitiesVersions::mavericksOrNewer() const { return systemFacts_.frameworkVersion() >= 1265.0; }
bool KTUtilitiesVersions::yosemiteOrNewer() const { return systemFacts_.frameworkVersion() >= 1343.0; }
bool KTUtilitiesVersions::elCapitanOrNewer() const { return systemFacts_.frameworkVersion() >= 1404.0; }
bool KTUtilitiesVersions::sierraOrNewer() const { return systemFacts_.frameworkVersion() >= 1490.0; }
bool KTUtilitiesVersions::highSierraOrNewer() const { return systemFacts_.frameworkVersion() >= 1537.2; }
bool KTUtilitiesVersions::mojaveOrNewer() const { return systemFacts_.frameworkVersion() >= 1639.0; }

}  // namespace halvorn
