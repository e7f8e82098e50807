// Versions: the one of this program, the order of the maker's version strings, and the release of the system.
//
// A version string is numbers joined by points, then perhaps one letter for the stage of development and a
// number within that stage: 2.1, 2.1.3, 3.0b4. Any text is accepted and compared by the same rules.
//
// Thread: any, decimalSystemVersion() apart.
#pragma once

#include <cstdint>

#include "Core/Log.h"
#include "Core/Ordering.h"
#include "Core/Text.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/session/SystemFacts.h"
#include "Platform/text/LocalizedDates.h"
#include "Platform/text/Unicode.h"

namespace halvorn {

struct KTThreePartVersion {  // 10.14.6
  std::int16_t major = 0;    // 10
  std::int16_t minor = 0;    // 14
  std::int16_t bugfix = 0;   // 6

  friend bool operator==(const KTThreePartVersion&, const KTThreePartVersion&) = default;
};

// The place of a stage letter in "pdabf ", the least mature first; 0 for any other character.
[[nodiscard]] std::int32_t developmentStage(char16_t character);

class KTUtilitiesVersions {
 public:
  // All that is passed in must outlive this object.
  KTUtilitiesVersions(const Bundles& bundles, const SystemFacts& systemFacts, const Unicode& unicode,
                      const LocalizedDates& dates, const Log& log);

  // "CFBundleVersion" of the main bundle; "" when it is missing.
  [[nodiscard]] Text versionString() const;
  // What precedes the first character other than a point and the digits 0 to 9: "2.1b3" -> "2.1". A text
  // without such a character is returned itself.
  [[nodiscard]] static Text plainVersionOf(const Text& version);
  [[nodiscard]] Text plainVersionString() const;  // of this program's
  // Ascending when `version` is the older one. 3.0d5 < 3.0a1 < 3.0b9 < 3.0b10 < 3.0f1 < 3.0 < 3.0.0.
  [[nodiscard]] Ordering compareVersion(const Text& version, const Text& withVersion) const;

  // The system's packed version (0x1068 for 10.6.8); 0 when it has none.
  [[nodiscard]] std::int32_t hexSystemVersion() const;
  // Parts that the system does not tell are 0. Logs: a missing minor or bugfix part.
  [[nodiscard]] KTThreePartVersion threePartVersion() const;
  // 101406 for 10.14.6. The first answer other than 0 is kept. Thread: main.
  [[nodiscard]] std::int32_t decimalSystemVersion();
  // "10.14.6", "10.15".
  [[nodiscard]] Text systemVersionString() const;

  // The day ("2021-03-14") in the person's short date style. It is taken at midnight UTC and
  // shown in the local time zone, so west of Greenwich the text shows the day before. nullopt
  // when it is no day of the calendar.
  [[nodiscard]] OptionalText localizedDateString(const Text& day) const;

  // Releases, by the version number of the application framework.
  [[nodiscard]] bool pantherOrOlder() const;
  [[nodiscard]] bool leopardOrNewer() const;
  [[nodiscard]] bool snowleopardOrNewer() const;
  [[nodiscard]] bool lionOrNewer() const;
  [[nodiscard]] bool mountainLionOrNewer() const;
  [[nodiscard]] bool mavericksOrNewer() const;
  [[nodiscard]] bool yosemiteOrNewer() const;
  [[nodiscard]] bool elCapitanOrNewer() const;
  [[nodiscard]] bool sierraOrNewer() const;
  [[nodiscard]] bool highSierraOrNewer() const;
  [[nodiscard]] bool mojaveOrNewer() const;

 private:
  const Bundles& bundles_;
  const SystemFacts& systemFacts_;
  const Unicode& unicode_;
  const LocalizedDates& dates_;
  const Log& log_;
  std::int32_t decimalSystemVersion_ = 0;
};

}  // namespace halvorn
