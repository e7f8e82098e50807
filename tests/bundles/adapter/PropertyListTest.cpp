#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <string>

#include "Platform/bundles/linux/PropertyListReader.h"
#include "tests/support/BinaryPropertyListWriter.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using namespace std::string_literals;

std::string xml(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n" +
         content + "\n</plist>\n";
}

std::string asUtf16(const std::string& ascii, bool isBig, bool hasMark) {
  std::string result = !hasMark ? "" : isBig ? "\xFE\xFF" : "\xFF\xFE";
  for (const char character : ascii) {
    if (isBig) result.push_back('\0');
    result.push_back(character);
    if (!isBig) result.push_back('\0');
  }
  return result;
}

// Everything a list can hold, as the XML file of data/destination has it.
PropertyDictionary everything() {
  PropertyArray list;
  list.push_back("one");
  list.push_back(2);
  list.push_back(PropertyArray());
  PropertyDictionary result;
  result.emplace("text", "Grüße & <mehr>");
  result.emplace("emoji", Text("😀"));
  result.emplace("yes", true);
  result.emplace("no", false);
  result.emplace("number", 4711);
  result.emplace("negative", std::int64_t{-9'000'000'000});
  result.emplace("real", 2.5);
  result.emplace("date", Date{1'300'000'000.0});
  result.emplace("data", PropertyData{"\x00\x01\xFE\xFF halvorn"s});
  result.emplace("list", list);
  result.emplace("empty", PropertyDictionary());
  return result;
}

std::string dataFile(const std::string& name) {
  std::ifstream file(std::string(KT_SOURCE_DIR) + "/tests/data/destination/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(PropertyList, XmlHoldsEveryKindOfValue) {
  EXPECT_EQ(readPropertyDictionary(dataFile("everything.xml.plist")), everything());
}

TEST(PropertyList, BinaryOfAnotherWriterHoldsEveryKindOfValue) {
  EXPECT_EQ(readPropertyDictionary(dataFile("everything.binary.plist")), everything());
}

TEST(PropertyList, WhatAnotherToolTurnedIntoBinaryReadsTheSame) {
  if (!programExists("plistutil")) GTEST_SKIP() << "plistutil is not installed";
  const TemporaryFolder folder;
  const std::string source = std::string(KT_SOURCE_DIR) + "/tests/data/destination/everything.xml.plist";
  const std::string binary = folder / "out.plist";
  ASSERT_EQ(runCommand({"plistutil", "-i", source, "-o", binary, "-f", "bin"}).status, 0);
  std::ifstream file(binary, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  ASSERT_TRUE(bytes.starts_with("bplist00"));
  EXPECT_EQ(readPropertyDictionary(bytes), everything());
}

TEST(PropertyList, XmlIsReadInEveryEncodingItComesIn) {
  const std::string list = "<plist><string>abc</string></plist>";
  for (const std::string& bytes :
       {list, "\xEF\xBB\xBF" + list, "\n\t " + list, asUtf16(list, false, true), asUtf16(list, true, true),
        asUtf16(list, false, false), asUtf16(list, true, false),
        "<?xml version='1.0' encoding='ISO-8859-1'?>" + list, "<string>abc</string>"s}) {
    EXPECT_EQ(readPropertyList(bytes), PropertyValue("abc")) << bytes;
  }
  EXPECT_EQ(readPropertyList("<?xml version='1.0' encoding='ISO-8859-1'?><string>\xE4</string>"),
            PropertyValue("ä"));
}

TEST(PropertyList, XmlIsReadInTheEncodingItDeclares) {
  const struct {
    const char* encoding;
    const char* bytes;
    Text text;
  } cases[] = {
      {"windows-1252", "\x80\xE4\x93", "€ä“"},
      {"macintosh", "\x8A\xDB", "ä€"},
      {"latin1", "\xE4\xA4", "ä¤"},
      {"utf8", "\xC3\xA4\xE2\x82\xAC", "ä€"},
      {"UTF8", "\xC3\xA4", "ä"},
      {"iso-8859-15", "\xA4", "€"},
      {"Shift_JIS", "\x93\xFA\x96\x7B", "日本"},
      {"koi8-r", "\xF0", "П"},
      {"ISO-8859-1", "\xE4", "ä"},
      {"us-ascii", "a", "a"},
  };
  for (const auto& c : cases) {
    const std::string list = "?><plist><string>"s + c.bytes + "</string></plist>";
    for (const std::string& declaration :
         {"<?xml version=\"1.0\" encoding=\""s + c.encoding + "\"",
          "<?xml version = '1.0'\n\tencoding = '"s + c.encoding + "' standalone='yes' "}) {
      EXPECT_EQ(readPropertyList(declaration + list), PropertyValue(c.text)) << c.encoding;
    }
  }
  for (const char* const declaration :
       {"<?xml version='1.0' encoding='klingon'?>", "<?xml version='1.0' encoding=''?>",
        "<?xml version='1.0' encoding='windows-1252?>", "<?xml version='1.0' encoding='us-ascii'?>",
        "<?xml version='1.0' encoding='utf8'?>"}) {
    EXPECT_EQ(readPropertyList(declaration + "<string>\xE4</string>"s), std::nullopt) << declaration;
  }
}

TEST(PropertyList, RealsOfEverySizeAreTheNearestNumbers) {
  const std::pair<std::string, double> cases[] = {{"0." + std::string(400, '0') + "1", 0.0},
                                                  {"1" + std::string(400, '0') + "e-395", 1e5},
                                                  {"1e400", HUGE_VAL},
                                                  {"-1e400", -HUGE_VAL},
                                                  {"+2.5", 2.5},
                                                  {" -.5e1\n", -5.0},
                                                  {"+infinity", HUGE_VAL},
                                                  {"-inf", -HUGE_VAL}};
  for (const auto& [text, value] : cases) {
    EXPECT_EQ(readPropertyList(xml("<real>" + text + "</real>")), PropertyValue(value)) << text;
    if (text.find_first_of("in") != std::string::npos) continue;
    EXPECT_EQ(readPropertyList("{ a = <*R" + text + ">; }"),
              PropertyValue(PropertyDictionary{{"a", PropertyValue(value)}}))
        << text;
  }
  const auto none = readPropertyList(xml("<real>nan</real>"));
  ASSERT_TRUE(none && none->real());
  EXPECT_TRUE(std::isnan(*none->real()));
  for (const char* const text : {"1.5x", "", "-", "infinite", "1 2", "0x10", "++1"}) {
    EXPECT_EQ(readPropertyList(xml("<real>"s + text + "</real>")), std::nullopt) << text;
  }
}

TEST(PropertyList, XmlNumbersAtTheirLimits) {
  const struct {
    const char* text;
    std::optional<PropertyValue> value;
  } cases[] = {
      {"0", PropertyValue(0)},
      {"+12", PropertyValue(12)},
      {" 12\n", PropertyValue(12)},
      {"0x1F", PropertyValue(31)},
      {"9223372036854775807", PropertyValue(INT64_MAX)},
      {"-9223372036854775808", PropertyValue(INT64_MIN)},
      {"18446744073709551615", PropertyValue(18446744073709551615.0)},
      {"99999999999999999999999", std::nullopt},
      {"", std::nullopt},
      {"12a", std::nullopt},
      {"--1", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(readPropertyList(xml("<integer>"s + c.text + "</integer>")), c.value) << c.text;
  }
  const auto infinite = readPropertyList(xml("<real>inf</real>"));
  ASSERT_TRUE(infinite && infinite->real());
  EXPECT_TRUE(std::isinf(*infinite->real()));
  EXPECT_EQ(readPropertyList(xml("<real>abc</real>")), std::nullopt);
}

TEST(PropertyList, XmlThatContradictsItselfIsNone) {
  for (const char* const content :
       {"", "<dict><key>a</key></dict>", "<dict><string>a</string></dict>",
        "<dict><key>a</key><key>b</key></dict>", "<array><key>a</key></array>",
        "<string>a</string><string>b</string>", "<string><string>a</string></string>", "<dict>words</dict>",
        "<unknown/>", "<key>a</key>", "<date>yesterday</date>", "<date>2026-13-01T00:00:00Z</date>",
        "<data>****</data>", "<plist><true/></plist>", "<string>&unknown;</string>", "<true>"}) {
    EXPECT_EQ(readPropertyList(xml(content)), std::nullopt) << content;
  }
  EXPECT_EQ(readPropertyList("<plist><string>\xFF\xFE</string></plist>"), std::nullopt);
}

TEST(PropertyList, TheLastOfEqualKeysCounts) {
  const auto list = readPropertyDictionary(
      xml("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"));
  EXPECT_EQ(list, (PropertyDictionary{{"a", "2"}}));
}

TEST(PropertyList, NoEntityIsDeclaredOrFetched) {
  const TemporaryFolder folder;
  std::ofstream(folder / "secret") << "secret";
  const std::string bodies[] = {"<!DOCTYPE plist [<!ENTITY e SYSTEM \"file://" + (folder / "secret") +
                                    "\">]><plist><string>&e;</string></plist>",
                                "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>",
                                "<!DOCTYPE plist [<!ENTITY % p SYSTEM \"file://" + (folder / "secret") +
                                    "\"> %p;]><plist><true/></plist>"};
  for (const std::string& body : bodies) EXPECT_EQ(readPropertyList(body), std::nullopt) << body;
}

TEST(PropertyList, ABillionLaughsAreRefused) {
  std::string bomb = "<!DOCTYPE plist [<!ENTITY l0 \"lol\">";
  for (int i = 1; i < 10; ++i) {
    bomb += "<!ENTITY l" + std::to_string(i) + " \"";
    for (int j = 0; j < 10; ++j) bomb += "&l" + std::to_string(i - 1) + ";";
    bomb += "\">";
  }
  EXPECT_EQ(readPropertyList(bomb + "]><plist><string>&l9;</string></plist>"), std::nullopt);
}

std::string repeated(const std::string& part, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += part;
  return result;
}

TEST(PropertyList, DeepNestingIsRefusedInEveryFormat) {
  EXPECT_NE(readPropertyList(xml(repeated("<array>", 100) + repeated("</array>", 100))), std::nullopt);
  EXPECT_EQ(readPropertyList(xml(repeated("<array>", 100'000) + repeated("</array>", 100'000))),
            std::nullopt);
  EXPECT_NE(readPropertyList(repeated("(", 100) + repeated(")", 100)), std::nullopt);
  EXPECT_EQ(readPropertyList(repeated("(", 100'000) + repeated(")", 100'000)), std::nullopt);
  EXPECT_EQ(readPropertyList(repeated("{a=", 100'000)), std::nullopt);
  EXPECT_NE(readPropertyList(nestedBinaryArrays(100)), std::nullopt);
  EXPECT_EQ(readPropertyList(nestedBinaryArrays(60'000)), std::nullopt);
}

TEST(PropertyList, ABinaryThatGrowsWithEveryLevelIsRefused) {
  const std::string bytes = doublingBinaryArrays(40);
  EXPECT_LT(bytes.size(), 400u);
  EXPECT_EQ(readPropertyList(bytes), std::nullopt);
  EXPECT_NE(readPropertyList(doublingBinaryArrays(10)), std::nullopt);
}

TEST(PropertyList, ABinaryThatContainsItselfIsRefused) {
  EXPECT_EQ(readPropertyList(binaryPropertyList({"\xA1"s + '\0'}, 0)), std::nullopt);
}

TEST(PropertyList, ABinaryThatRepeatsALargeDataIsRefused) {
  // One array that names the same megabyte two hundred times.
  const std::string data = "\x4F\x12\x00\x10\x00\x00"s + std::string(1024UL * 1024, 'x');
  const std::string array = "\xAF\x10\xC8"s + std::string(200, '\1');
  EXPECT_EQ(readPropertyList(binaryPropertyList({array, data}, 0)), std::nullopt);
}

TEST(PropertyList, BinaryObjectsOfEveryWidth) {
  const struct {
    std::string object;
    std::optional<PropertyValue> value;
  } cases[] = {
      {"\x10\xFF"s, PropertyValue(255)},
      {"\x11\x01\x00"s, PropertyValue(256)},
      {"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, PropertyValue(-1)},
      {"\x14"s + std::string(8, '\0') + "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s,
       PropertyValue(18446744073709551615.0)},
      {"\x15"s + std::string(32, '\0'), std::nullopt},
      {"\x22\x40\x20\x00\x00"s, PropertyValue(2.5)},
      {"\x33"s + std::string(8, '\0'), PropertyValue(Date{978'307'200.0})},
      {"\x52"
       "ab"s,
       PropertyValue("ab")},
      {"\x62\x00\x61\x20\xAC"s, PropertyValue("a€")},
      {"\x5F\x10\x02"
       "ab"s,
       PropertyValue("ab")},
      {"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, std::nullopt},
      {"\x53"
       "ab"s,
       std::nullopt},
      {"\x00"s, std::nullopt},
      {"\x80\x01"s, std::nullopt},
      {"\xD1\x00\x00"s, std::nullopt},
  };
  for (const auto& c : cases)
    EXPECT_EQ(readPropertyList(binaryPropertyList({c.object}, 0)), c.value) << c.object;
}

TEST(PropertyList, ABinaryWithAFalseTrailerIsNone) {
  const std::string good = binaryPropertyList({"\x08"s}, 0);
  ASSERT_EQ(readPropertyList(good), PropertyValue(false));
  EXPECT_EQ(readPropertyList("bplist00"), std::nullopt);
  for (std::size_t position = good.size() - 26; position < good.size(); ++position) {
    std::string bad = good;
    bad[position] = '\xFF';
    EXPECT_EQ(readPropertyList(bad), std::nullopt) << position;
  }
}

TEST(PropertyList, TheOldFormatHoldsTextsListsAndData) {
  const std::string list = R"({
    // a comment
    NSExecutable = EdenMath; /* another; */
    "quoted key" = "a \"b\"\n\101\U00e4\\";
    'single' = 'it';
    list = (one, "two", (three,),);
    data = <0fbd77 1c27>;
    based = <[aGk=]>;
    typed = (<*I12>, <*BY>, <*R2.5>, <*D2011-03-13 07:06:40 +0000>);
    path = /usr/lib:x-1.2_$;
    last = { }
  })";
  PropertyDictionary expected;
  expected.emplace("NSExecutable", "EdenMath");
  expected.emplace("quoted key", Text("a \"b\"\nAä\\"));
  expected.emplace("single", "it");
  expected.emplace("list", PropertyArray{"one", "two", PropertyArray{"three"}});
  expected.emplace("data", PropertyData{"\x0F\xBD\x77\x1C\x27"});
  expected.emplace("based", PropertyData{"hi"});
  expected.emplace("typed", PropertyArray{12, true, 2.5, Date{1'300'000'000.0}});
  expected.emplace("path", "/usr/lib:x-1.2_$");
  expected.emplace("last", PropertyDictionary());
  EXPECT_EQ(readPropertyDictionary(list), expected);
}

TEST(PropertyList, TheOldFormatThatContradictsItselfIsNone) {
  for (const char* const list :
       {"", "   ", "{", "}", "{a=b}x", "{a b;}", "{a=;}", "(a", "(a b)", "\"open", "\"open\\", "<0g>",
        "<012>", "<12", "<*X1>", "<*", "/* open", "{a=b; /* open", "{= b;}"}) {
    EXPECT_EQ(readPropertyList(list), std::nullopt) << list;
  }
}

TEST(StringTable, EntriesStandWithoutBraces) {
  const auto table =
      readStringTable("/* Button */\n\"Install\" = \"Installieren\";\n\"Quit\";\nOK = 'Gut';\n");
  EXPECT_EQ(table, (PropertyDictionary{{"Install", "Installieren"}, {"Quit", "Quit"}, {"OK", "Gut"}}));
  EXPECT_EQ(readStringTable(""), PropertyDictionary());
  EXPECT_EQ(readStringTable("{ a = b; }"), (PropertyDictionary{{"a", "b"}}));
  EXPECT_EQ(readStringTable(xml("<dict><key>a</key><string>b</string></dict>")),
            (PropertyDictionary{{"a", "b"}}));
}

TEST(StringTable, IsReadInEveryEncodingItComesIn) {
  const std::string table = "\"a\" = \"b\";";
  for (const std::string& bytes :
       {"\xEF\xBB\xBF" + table, asUtf16(table, false, true), asUtf16(table, true, true),
        asUtf16(table, false, false), asUtf16(table, true, false)}) {
    EXPECT_EQ(readStringTable(bytes), (PropertyDictionary{{"a", "b"}}));
  }
  EXPECT_EQ(readStringTable("a = \"\xC3\xA4\";"), (PropertyDictionary{{"a", "ä"}}));
  EXPECT_EQ(readStringTable("a = \"\xE4\";"), (PropertyDictionary{{"a", "ä"}}));
  EXPECT_EQ(readStringTable(asUtf16(table, false, true) + "x"), std::nullopt);
}

TEST(StringTable, ABrokenOneIsNone) {
  EXPECT_EQ(readStringTable("\"a\" = \"b\" \"c\" = \"d\";"), std::nullopt);
  EXPECT_EQ(readStringTable("\"a\" = \"b"), std::nullopt);
  EXPECT_EQ(readStringTable("}"), std::nullopt);
}

TEST(PropertyList, WhatIsOverTheLimitsIsNone) {
  EXPECT_EQ(readPropertyList("(a, b)", {.fileBytes = 5}), std::nullopt);
  EXPECT_EQ(readPropertyList("(a, b, c)", {.values = 3}), std::nullopt);
  EXPECT_NE(readPropertyList("(a, b, c)", {.values = 4}), std::nullopt);
  EXPECT_EQ(readPropertyList("(abc, def)", {.contentBytes = 5}), std::nullopt);
  EXPECT_EQ(readPropertyList(xml("<array><true/><true/></array>"), {.values = 2}), std::nullopt);
}

// Whatever the bytes, an answer comes back, and soon. The sanitizers watch.
TEST(PropertyList, NoMutationOfAListDoesHarm) {
  const std::string seeds[] = {dataFile("everything.xml.plist"), dataFile("everything.binary.plist"),
                               doublingBinaryArrays(6),
                               "{ a = (b, \"c\\U00e4\", <0fbd>, <*I12>); /* x */ 'd' = { e = f; }; }",
                               asUtf16("\"a\" = \"b\";", false, true)};
  std::mt19937 random(4711);
  int readable = 0;
  for (const std::string& seed : seeds) {
    for (int round = 0; round < 1500; ++round) {
      std::string bytes = seed;
      for (std::uint32_t change = random() % 8; change > 0; --change) {
        const std::size_t position = random() % bytes.size();
        switch (random() % 4) {
          case 0:
            bytes[position] = static_cast<char>(random());
            break;
          case 1:
            bytes[position] = static_cast<char>(bytes[position] ^ (1 << random() % 8));
            break;
          case 2:
            bytes.insert(position, bytes.substr(random() % bytes.size(), random() % 16));
            break;
          default:
            bytes.erase(position, 1 + random() % 3);
            if (bytes.empty()) bytes = "x";
        }
      }
      if (random() % 10 == 0) bytes.resize(random() % bytes.size());
      readable += readPropertyList(bytes).has_value() ? 1 : 0;
      readable += readStringTable(bytes).has_value() ? 1 : 0;
    }
  }
  EXPECT_GT(readable, 100);    // some survive the change ...
  EXPECT_LT(readable, 14000);  // ... and many do not
}

}  // namespace
}  // namespace halvorn
