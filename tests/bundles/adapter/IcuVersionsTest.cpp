// Versions and dates with the real character tables and calendars.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <optional>
#include <string>

#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/text/linux/IcuLocalizedDates.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/VersionPairs.h"

namespace halvorn {
namespace {

// An environment variable as a test wants it; the old value comes back with the end of the object.
class WithVariable {
 public:
  WithVariable(const char* name, const char* value) : name_(name) {
    if (const char* const old = ::getenv(name)) old_ = old;
    set(value);
  }
  ~WithVariable() { set(old_ ? old_->c_str() : nullptr); }
  WithVariable(const WithVariable&) = delete;
  WithVariable& operator=(const WithVariable&) = delete;

 private:
  void set(const char* value) {
    if (value) {
      ::setenv(name_, value, 1);
    } else {
      ::unsetenv(name_);
    }
    ::tzset();
  }
  const char* name_;
  std::optional<std::string> old_;
};

class IcuVersions : public testing::Test {
 protected:
  OptionalText shownIn(const char* locale, const char* zone, const char* day = "2021-03-14") {
    const WithVariable timeZone("TZ", zone);
    const IcuLocalizedDates localDates{Text(locale)};
    return KTUtilitiesVersions(bundles, systemFacts, unicode, localDates, log).localizedDateString(day);
  }

  FakeBundles bundles;
  FakeSystemFacts systemFacts;
  IcuUnicode unicode;
  IcuLocalizedDates dates{Text("en_US")};
  RecordingLog log;
  KTUtilitiesVersions utilities{bundles, systemFacts, unicode, dates, log};
};

TEST_F(IcuVersions, FollowTheTables) {
  for (const char* const file : {"pairs.txt", "pairs-unicode.txt"}) {
    for (const VersionPair& pair : versionPairsFrom(file)) {
      EXPECT_EQ(utilities.compareVersion(pair.version, pair.withVersion), pair.ordering)
          << "'" << pair.version.bytes() << "' against '" << pair.withVersion.bytes() << "': " << pair.why;
    }
  }
}

TEST_F(IcuVersions, AgreeWithTheOracle) {
  const auto versions = randomVersions(100, 4);
  const VersionOracle oracle(unicode);
  for (const Text& a : versions) {
    for (const Text& b : versions) {
      ASSERT_EQ(utilities.compareVersion(a, b), oracle.compare(a, b)) << a.bytes() << " | " << b.bytes();
    }
  }
}

TEST_F(IcuVersions, ShortDatesFollowTheLocale) {
  EXPECT_EQ(shownIn("en_US.UTF-8", "UTC"), Text("3/14/21"));
  EXPECT_EQ(shownIn("de_DE.UTF-8", "UTC"), Text("14.03.21"));
  EXPECT_EQ(shownIn("fr_FR@euro", "UTC"), Text("14/03/2021"));
  EXPECT_EQ(shownIn("en_GB", "UTC"), Text("14/03/2021"));
}

TEST_F(IcuVersions, DatesInAnUnknownLocaleAreStillDates) {
  for (const char* const locale : {"C", "POSIX", "", "xx_YY", "no such locale at all"}) {
    const OptionalText shown = shownIn(locale, "UTC");
    ASSERT_TRUE(shown) << locale;
    EXPECT_TRUE(shown->contains("14")) << locale << ": " << shown->bytes();
  }
}

TEST_F(IcuVersions, DateWestOfGreenwichIsTheDayBefore) {
  EXPECT_EQ(shownIn("en_US", "America/New_York"), Text("3/13/21"));
  EXPECT_EQ(shownIn("en_US", "America/New_York", "2021-01-01"), Text("12/31/20"));
}

TEST_F(IcuVersions, DateEastOfGreenwichIsTheDay) {
  EXPECT_EQ(shownIn("en_US", "Asia/Tokyo"), Text("3/14/21"));
}

TEST_F(IcuVersions, LocaleOfTheEnvironmentIsThatOfTimes) {
  const WithVariable timeZone("TZ", "UTC");
  const WithVariable all("LC_ALL", nullptr);
  const WithVariable times("LC_TIME", "de_DE.UTF-8");
  const WithVariable language("LANG", "en_US.UTF-8");
  EXPECT_EQ(IcuLocalizedDates().shortDate(Date{0}), Text("01.01.70"));
  const WithVariable noTimes("LC_TIME", "");
  EXPECT_EQ(IcuLocalizedDates().shortDate(Date{0}), Text("1/1/70"));
  const WithVariable allSet("LC_ALL", "de_DE.UTF-8");
  EXPECT_EQ(IcuLocalizedDates().shortDate(Date{0}), Text("01.01.70"));
}

}  // namespace
}  // namespace halvorn
