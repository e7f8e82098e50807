#include "KTStuff/KTClasses/KTUtilitiesVersions.h"

#include <gtest/gtest.h>

#include <functional>

#include "KTStuff/KTClasses/KTUtilitiesNumericOrder.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/VersionPairs.h"

namespace halvorn {
namespace {

class KTUtilitiesVersionsTest : public testing::Test {
 protected:
  void setBundleVersion(const PropertyValue& value) {
    bundles.setInfo(bundles.mainBundle, {{"CFBundleVersion", value}});
  }
  void setSystem(std::optional<int> major, std::optional<int> minor, std::optional<int> bugfix) {
    systemFacts.major = major;
    systemFacts.minor = minor;
    systemFacts.bugfix = bugfix;
  }

  FakeBundles bundles;
  FakeSystemFacts systemFacts;
  FakeUnicode unicode;
  FakeLocalizedDates dates;
  RecordingLog log;
  KTUtilitiesVersions utilities{bundles, systemFacts, unicode, dates, log};
};

using VersionString = KTUtilitiesVersionsTest;

TEST_F(VersionString, IsTheBundleVersionOfTheMainBundle) {
  setBundleVersion("2.1b3");
  EXPECT_EQ(utilities.versionString(), Text("2.1b3"));
}

TEST_F(VersionString, IsEmptyWithoutTheKey) {
  bundles.setInfo(bundles.mainBundle, {{"CFBundleShortVersionString", "2.1"}});
  EXPECT_EQ(utilities.versionString(), Text(""));
}

TEST_F(VersionString, IsEmptyWithoutAnInformationDictionary) {
  EXPECT_EQ(utilities.versionString(), Text(""));
}

TEST_F(VersionString, IsEmptyWhenTheValueIsNoText) {
  setBundleVersion(21);
  EXPECT_EQ(utilities.versionString(), Text(""));
}

using PlainVersion = KTUtilitiesVersionsTest;

TEST_F(PlainVersion, EndsBeforeTheFirstOtherCharacter) {
  EXPECT_EQ(KTUtilitiesVersions::plainVersionOf("2.1b3"), Text("2.1"));
  EXPECT_EQ(KTUtilitiesVersions::plainVersionOf("10.14.6 (18G103)"), Text("10.14.6"));
  EXPECT_EQ(KTUtilitiesVersions::plainVersionOf("1.2-3"), Text("1.2"));
  EXPECT_EQ(KTUtilitiesVersions::plainVersionOf("1.٢"), Text("1."));
}

TEST_F(PlainVersion, OfATextThatBeginsWithALetterIsEmpty) {
  EXPECT_EQ(KTUtilitiesVersions::plainVersionOf("v2.1"), Text(""));
}

TEST_F(PlainVersion, OfAPlainVersionIsTheVeryObject) {
  const Text version = "1.2.3";
  EXPECT_TRUE(KTUtilitiesVersions::plainVersionOf(version).isSameObject(version));
}

TEST_F(PlainVersion, OfTheEmptyTextIsTheVeryObject) {
  const Text empty = "";
  EXPECT_TRUE(KTUtilitiesVersions::plainVersionOf(empty).isSameObject(empty));
}

TEST_F(PlainVersion, StringIsThatOfTheMainBundle) {
  setBundleVersion("3.0b4");
  EXPECT_EQ(utilities.plainVersionString(), Text("3.0"));
}

TEST(DevelopmentStage, IsThePlaceInTheTable) {
  const std::u16string table = u"pdabf ";
  for (std::size_t index = 0; index < table.size(); ++index) {
    EXPECT_EQ(developmentStage(table[index]), static_cast<int>(index));
  }
}

TEST(DevelopmentStage, OfAnyOtherCharacterIsZero) {
  const std::u16string table = u"pdabf ";
  for (char16_t character = 0; character < 0x500; ++character) {
    if (table.find(character) != std::u16string::npos) continue;
    EXPECT_EQ(developmentStage(character), 0) << static_cast<int>(character);
  }
}

using CompareVersion = KTUtilitiesVersionsTest;

TEST_F(CompareVersion, FollowsTheTable) {
  const auto pairs = versionPairsFrom("pairs.txt");
  ASSERT_GE(pairs.size(), 200u);
  for (const VersionPair& pair : pairs) {
    EXPECT_EQ(utilities.compareVersion(pair.version, pair.withVersion), pair.ordering)
        << "'" << pair.version.bytes() << "' against '" << pair.withVersion.bytes() << "': " << pair.why;
  }
}

TEST_F(CompareVersion, ALetterBehindACharacterOfTwoUnitsIsTheLetter) {
  EXPECT_EQ(utilities.compareVersion("1.0\U0001F600", "1.0\U0001F600b2"), Ordering::Descending);
}

TEST_F(CompareVersion, ShorterOneIsOlderWithoutPadding) {
  EXPECT_EQ(utilities.compareVersion("1.0", "1.0.0"), Ordering::Ascending);
}

TEST_F(CompareVersion, ReleaseIsNewerThanItsFinalCandidate) {
  EXPECT_EQ(utilities.compareVersion("2.0", "2.0f0"), Ordering::Descending);
}

TEST_F(CompareVersion, UnknownLetterIsAsP) {
  EXPECT_EQ(utilities.compareVersion("2.0x3", "2.0p3"), Ordering::Same);
}

TEST_F(CompareVersion, EmptyStageNumberIsOlderThanZero) {
  EXPECT_EQ(utilities.compareVersion("2.0b", "2.0b0"), Ordering::Ascending);
}

TEST_F(CompareVersion, HalfACharacterDoesNotHideTheLetterBehindIt) {
  const auto version = [](char16_t stage) { return Text(std::u16string{u'1', 0xD801, stage, u'1'}); };
  EXPECT_EQ(utilities.compareVersion(version(u'd'), version(u'a')), Ordering::Ascending);
}

TEST_F(CompareVersion, ALetterOfTwoUnitsIsOneLetter) {
  struct : FakeUnicode {
    bool isLetter(char32_t scalar) const override { return scalar == 0x1D400 || scalar == 0x1D401; }
  } mathematics;
  const KTUtilitiesVersions versions(bundles, systemFacts, mathematics, dates, log);
  EXPECT_EQ(versions.compareVersion(Text(std::u16string{u'1', 0xD835, 0xDC01, u'2'}),
                                    Text(std::u16string{u'1', 0xD835, 0xDC00, u'1', u'0'})),
            Ordering::Ascending);
}

TEST_F(CompareVersion, TwoFirstHalvesAreNoLetterOfTwoUnits) {
  struct : FakeUnicode {
    bool isLetter(char32_t scalar) const override { return scalar == 0x1D3FF; }  // what they would add up to
  } tooLarge;
  const KTUtilitiesVersions versions(bundles, systemFacts, tooLarge, dates, log);
  EXPECT_EQ(versions.compareVersion(Text(std::u16string{u'1', 0xD835, 0xDBFF}), "1"), Ordering::Descending);
}

TEST_F(CompareVersion, StagesFollowOneAnother) {
  const std::vector<Text> ascending = {"3.0p1", "3.0d5", "3.0a1", "3.0b9", "3.0b10",
                                       "3.0f1", "3.0",   "3.0.0", "3.1p1"};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = i + 1; j < ascending.size(); ++j) {
      EXPECT_EQ(utilities.compareVersion(ascending[i], ascending[j]), Ordering::Ascending)
          << ascending[i].bytes() << " " << ascending[j].bytes();
    }
  }
}

TEST_F(CompareVersion, AgreesWithTheOracleOnRandomVersions) {
  const auto versions = randomVersions(150, 1);
  const VersionOracle oracle(unicode);
  for (const Text& a : versions) {
    for (const Text& b : versions) {
      ASSERT_EQ(utilities.compareVersion(a, b), oracle.compare(a, b)) << a.bytes() << " | " << b.bytes();
    }
  }
}

TEST_F(CompareVersion, IsAntisymmetricOnRandomVersions) {
  const auto versions = randomVersions(150, 2);
  for (const Text& a : versions) {
    EXPECT_EQ(utilities.compareVersion(a, a), Ordering::Same) << a.bytes();
    for (const Text& b : versions) {
      ASSERT_EQ(static_cast<int>(utilities.compareVersion(a, b)),
                -static_cast<int>(utilities.compareVersion(b, a)))
          << a.bytes() << " | " << b.bytes();
    }
  }
}

TEST_F(CompareVersion, IsTransitiveOnRandomVersions) {
  const auto versions = randomVersions(60, 3);
  const std::size_t count = versions.size();
  std::vector<int> answers(count * count);
  for (std::size_t i = 0; i < count * count; ++i) {
    answers[i] = static_cast<int>(utilities.compareVersion(versions[i / count], versions[i % count]));
  }
  for (std::size_t a = 0; a < count; ++a) {
    for (std::size_t b = 0; b < count; ++b) {
      for (std::size_t c = 0; c < count; ++c) {
        const int first = answers[a * count + b];
        const int second = answers[b * count + c];
        // What both steps agree on holds for the two together; two steps of which
        // one is "same" follow the other.
        if (first * second < 0) continue;
        ASSERT_EQ(answers[a * count + c], first != 0 ? first : second)
            << versions[a].bytes() << " | " << versions[b].bytes() << " | " << versions[c].bytes();
      }
    }
  }
}

TEST(NumericOrder, ComparesOtherTextUnitForUnit) {
  EXPECT_EQ(compareNumerically("a", "B"), Ordering::Descending);
  EXPECT_EQ(compareNumerically("", ""), Ordering::Same);
  EXPECT_EQ(compareNumerically("", "0"), Ordering::Ascending);
  EXPECT_EQ(compareNumerically("file 9 of 10", "file 10 of 2"), Ordering::Ascending);
  EXPECT_EQ(compareNumerically("01a", "1a"), Ordering::Same);
  EXPECT_EQ(compareNumerically("1a", "01b"), Ordering::Ascending);
}

using SystemVersion = KTUtilitiesVersionsTest;

TEST_F(SystemVersion, HexIsThePackedVersion) {
  systemFacts.packed = 0x1068;
  EXPECT_EQ(utilities.hexSystemVersion(), 0x1068);
}

TEST_F(SystemVersion, HexIsZeroWhenTheSystemHasNone) {
  systemFacts.packed.reset();
  EXPECT_EQ(utilities.hexSystemVersion(), 0);
}

TEST_F(SystemVersion, ThreePartsAreMajorMinorBugfix) {
  setSystem(10, 14, 6);
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{10, 14, 6}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(SystemVersion, MissingMinorIsLoggedAndZero) {
  setSystem(10, std::nullopt, 6);
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{10, 0, 6}));
  EXPECT_EQ(log.lines(), std::vector<std::string>{"cannot get minor version number"});
}

TEST_F(SystemVersion, MissingBugfixIsLoggedAndZero) {
  setSystem(10, 14, std::nullopt);
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{10, 14, 0}));
  EXPECT_EQ(log.lines(), std::vector<std::string>{"cannot get bugfix version number"});
}

TEST_F(SystemVersion, BothMissingAreLoggedInTurn) {
  setSystem(10, std::nullopt, std::nullopt);
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{10, 0, 0}));
  EXPECT_EQ(log.lines(), (std::vector<std::string>{"cannot get minor version number",
                                                   "cannot get bugfix version number"}));
}

TEST_F(SystemVersion, WithoutAMajorThePackedVersionIsDecoded) {
  setSystem(std::nullopt, 14, 6);
  systemFacts.packed = 0x1049;
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{10, 4, 9}));
  systemFacts.packed = 0x0922;
  EXPECT_EQ(utilities.threePartVersion(), (KTThreePartVersion{9, 2, 2}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(SystemVersion, WithNeitherIsZero) {
  setSystem(std::nullopt, 14, 6);
  EXPECT_EQ(utilities.threePartVersion(), KTThreePartVersion{});
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(SystemVersion, DecimalIsOneNumber) {
  setSystem(10, 14, 6);
  EXPECT_EQ(utilities.decimalSystemVersion(), 101406);
}

TEST_F(SystemVersion, DecimalIsComputedOnce) {
  setSystem(10, 14, 6);
  EXPECT_EQ(utilities.decimalSystemVersion(), 101406);
  setSystem(10, 15, 0);
  EXPECT_EQ(utilities.decimalSystemVersion(), 101406);
}

TEST_F(SystemVersion, DecimalOfZeroIsComputedAgain) {
  setSystem(std::nullopt, std::nullopt, std::nullopt);
  EXPECT_EQ(utilities.decimalSystemVersion(), 0);
  setSystem(10, 15, 0);
  EXPECT_EQ(utilities.decimalSystemVersion(), 101500);
}

TEST_F(SystemVersion, StringLeavesOutABugfixOfZero) {
  setSystem(10, 15, 0);
  EXPECT_EQ(utilities.systemVersionString(), Text("10.15"));
}

TEST_F(SystemVersion, StringNamesTheBugfix) {
  setSystem(10, 14, 6);
  EXPECT_EQ(utilities.systemVersionString(), Text("10.14.6"));
}

TEST_F(SystemVersion, StringLeavesOutANegativeBugfix) {
  setSystem(10, 14, -1);
  EXPECT_EQ(utilities.systemVersionString(), Text("10.14"));
}

TEST_F(SystemVersion, StringOfAKernelReadsLikeOne) {
  setSystem(6, 1, 90);
  EXPECT_EQ(utilities.systemVersionString(), Text("6.1.90"));
}

using LocalizedDate = KTUtilitiesVersionsTest;

TEST_F(LocalizedDate, AsksForMidnightInGreenwich) {
  EXPECT_EQ(utilities.localizedDateString("1970-01-01"), Text("day of 0.000000"));
  EXPECT_EQ(utilities.localizedDateString("2021-03-14"), Text("day of 1615680000.000000"));
  EXPECT_EQ(utilities.localizedDateString("1969-12-31"), Text("day of -86400.000000"));
  EXPECT_EQ(utilities.localizedDateString("2024-02-29"), Text("day of 1709164800.000000"));
}

TEST_F(LocalizedDate, IsNothingForATextThatIsNoDay) {
  for (const char* const text :
       {"", "2021", "2021-3-14", "2021-02-29", "2021-13-01", "2021-00-10", "2021-01-32", "2021-03-14 ",
        "2021-03-14 00:00:00", "+021-03-14", "14.03.2021", "2021/03/14"}) {
    EXPECT_EQ(utilities.localizedDateString(text), std::nullopt) << text;
  }
  EXPECT_TRUE(dates.asked.empty());
}

TEST_F(LocalizedDate, IsNothingWhenTheSystemCannotTell) {
  dates.answers = false;
  EXPECT_EQ(utilities.localizedDateString("2021-03-14"), std::nullopt);
}

using ReleasePredicates = KTUtilitiesVersionsTest;

TEST_F(ReleasePredicates, HoldFromTheirThresholdOn) {
  struct Row {
    const char* name;
    bool (KTUtilitiesVersions::*predicate)() const;
    double below;
    double from;
  };
  const Row rows[] = {
      {"leopard, strictly more and rounded down", &KTUtilitiesVersions::leopardOrNewer, 824.99, 825.0},
      {"snow leopard, rounded down", &KTUtilitiesVersions::snowleopardOrNewer, 1037.99, 1038.0},
      {"lion", &KTUtilitiesVersions::lionOrNewer, 1137.99, 1138.0},
      {"mountain lion", &KTUtilitiesVersions::mountainLionOrNewer, 1186.99, 1187.0},
      {"mavericks", &KTUtilitiesVersions::mavericksOrNewer, 1264.99, 1265.0},
      {"yosemite", &KTUtilitiesVersions::yosemiteOrNewer, 1342.99, 1343.0},
      {"el capitan", &KTUtilitiesVersions::elCapitanOrNewer, 1403.99, 1404.0},
      {"sierra", &KTUtilitiesVersions::sierraOrNewer, 1489.99, 1490.0},
      {"high sierra, with its fraction", &KTUtilitiesVersions::highSierraOrNewer, 1537.19, 1537.2},
      {"mojave", &KTUtilitiesVersions::mojaveOrNewer, 1638.99, 1639.0},
  };
  for (const Row& row : rows) {
    systemFacts.framework = row.below;
    EXPECT_FALSE(std::invoke(row.predicate, utilities)) << row.name;
    systemFacts.framework = row.from;
    EXPECT_TRUE(std::invoke(row.predicate, utilities)) << row.name;
    systemFacts.framework = 9999;
    EXPECT_TRUE(std::invoke(row.predicate, utilities)) << row.name;
    systemFacts.framework = 0;
    EXPECT_FALSE(std::invoke(row.predicate, utilities)) << row.name;
  }
}

TEST_F(ReleasePredicates, PantherIsTheOneTestOfOlder) {
  systemFacts.framework = 743.99;  // rounded down
  EXPECT_TRUE(utilities.pantherOrOlder());
  systemFacts.framework = 744.0;
  EXPECT_FALSE(utilities.pantherOrOlder());
}

TEST_F(ReleasePredicates, LeopardItselfIsNotReachedAtItsThreshold) {
  systemFacts.framework = 824.0;
  EXPECT_FALSE(utilities.leopardOrNewer());
}

}  // namespace
}  // namespace halvorn
