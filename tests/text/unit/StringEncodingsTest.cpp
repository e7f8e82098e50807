// Bytes of known and unknown encodings, appending to files.
#include <gtest/gtest.h>

#include <cmath>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "tests/fakes/FakeFileHandles.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/fakes/FakeTextCodecs.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Lines = std::vector<std::string>;
using namespace std::string_literals;

TEST(LegacyTexts, AreReadAsMacOSRoman) {
  EXPECT_EQ(stringWithMacRomanCString("Gr\x9F\xA7"
                                      "e"),
            Text("Grüße"));
  EXPECT_EQ(stringWithMacRomanCString("abcdef", 3), Text("abc"));
  EXPECT_EQ(stringWithMacRomanCString("a\0b", 3).length(), 3u);
  EXPECT_EQ(stringWithMacRomanCString("abc", 0), Text(""));
  EXPECT_EQ(stringWithMacRomanCString("abc", -1), Text(""));
  EXPECT_EQ(stringWithOSType(fourCharCode("ABCD"), MacRomanCodes()), Text("ABCD"));
  EXPECT_EQ(stringWithOSType(0x4D4143A9, MacRomanCodes()), Text("MAC©"));
}

TEST(LegacyTexts, TheMutableClassMakesMutableTexts) {
  MutableText text = MutableStringExtensions::stringWithMacRomanCString(
      "\x8A"
      "b");
  EXPECT_EQ(text.text(), Text("äb"));
  text.append("c");
  EXPECT_EQ(text.text(), Text("äbc"));
  EXPECT_EQ(MutableStringExtensions::stringWithMacRomanCString("abc", 2).text(), Text("ab"));
}

class ReasonableTextFactor : public testing::Test {
 protected:
  float score(const Text& text) const { return reasonableTextFactor(text, "Latin1", unicode_); }
  FakeUnicode unicode_;
};

TEST_F(ReasonableTextFactor, LettersDigitsBlanksAndLineEndsAreGood) {
  EXPECT_FLOAT_EQ(score("Hello world"), 1.0F);
  EXPECT_FLOAT_EQ(score("a1\t\n\r b"), 1.0F);
}

TEST_F(ReasonableTextFactor, PunctuationCountsNothing) {
  EXPECT_FLOAT_EQ(score("!!!"), 0.0F);
  EXPECT_FLOAT_EQ(score("ab!!"), 0.5F);
  EXPECT_FLOAT_EQ(score("a\x7F"), 0.5F);
}

TEST_F(ReasonableTextFactor, OtherControlCharactersAreBad) {
  EXPECT_FLOAT_EQ(score("\x01"
                        "a\x02\x0B"),
                  -0.5F);
}

TEST_F(ReasonableTextFactor, CodesWithoutACharacterAreTenTimesAsBad) {
  class Unassigned : public FakeUnicode {
   public:
    bool isUnassigned(char32_t scalar) const override { return scalar == 0xFFFE; }
  };
  EXPECT_FLOAT_EQ(reasonableTextFactor(Text(u"aaa\xFFFE"), "Unicode", Unassigned()), -1.75F);
}

TEST_F(ReasonableTextFactor, OnlyTheFirst1000UnitsAreLookedAt) {
  EXPECT_FLOAT_EQ(score(repeated("a", 1000) + repeated("\x01", 5000)), 1.0F);
  EXPECT_FLOAT_EQ(score(repeated("a", 999) + repeated("\x01", 5000)), 0.998F);
}

TEST_F(ReasonableTextFactor, AnEmptyTextGivesNaNWhichComparesFalseWithEverything) {
  EXPECT_TRUE(std::isnan(score("")));
  EXPECT_FALSE(score("") > -1.0e6F);
}

class EncodingsOfFiles : public testing::Test {
 protected:
  TextEncoding explicitEncoding(const std::string& bytes) {
    files_.addFile("/file", bytes);
    return explicitEncodingOfFile("/file", 77, files_);
  }
  OptionalText best(const std::string& bytes) {
    files_.addFile("/file", bytes);
    return stringWithBestEncodingFromFile("/file", files_, codecs_, unicode_);
  }
  FakeFileManager files_;
  FakeTextCodecs codecs_;
  FakeUnicode unicode_;
};

TEST_F(EncodingsOfFiles, TheFirstBytesSayTheEncoding) {
  EXPECT_EQ(explicitEncoding("\xEF\xBB\xBF"
                             "a"),
            TextEncodings::utf8);
  EXPECT_EQ(explicitEncoding("\xFE\xFF\0a"s), TextEncodings::utf16BigEndian);
  EXPECT_EQ(explicitEncoding("\0\0\xFE\xFF"s), TextEncodings::utf32BigEndian);
  EXPECT_EQ(explicitEncoding("\xFF\xFE\x41\0"s), TextEncodings::utf16LittleEndian);
  EXPECT_EQ(explicitEncoding("\xFF\xFE\0\0"s), TextEncodings::utf32LittleEndian);
}

TEST_F(EncodingsOfFiles, AnythingElseIsTheDefault) {
  for (const std::string& bytes :
       {""s, "a"s, "\xEF\xBB"s, "\xFE\xFE"s, "\xFE"s, "\xFF"s, "\xFF\xFF"s, "\0\0\xFE"s}) {
    EXPECT_EQ(explicitEncoding(bytes), 77u);
  }
}

TEST_F(EncodingsOfFiles, MissingBytesAreZero) {
  EXPECT_EQ(explicitEncoding("\xFF\xFE"), TextEncodings::utf32LittleEndian);
}

TEST_F(EncodingsOfFiles, UnreadableFilesGiveTheDefaultAndNoText) {
  files_.addFolder("/folder");
  files_.addFile("/locked", "\xEF\xBB\xBF");
  files_.node("/locked")->isReadable = false;
  for (const Text& path : {Text("/missing"), Text("/folder"), Text("/locked")}) {
    EXPECT_EQ(explicitEncodingOfFile(path, 77, files_), 77u) << path.bytes();
    EXPECT_EQ(stringWithBestEncodingFromFile(path, files_, codecs_, unicode_), std::nullopt) << path.bytes();
  }
}

TEST_F(EncodingsOfFiles, AMarkedFileIsReadAsItsMarkSays) {
  EXPECT_EQ(best("\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F"), Text("grüß"));
  EXPECT_EQ(best("\xFE\xFF\0A"s), Text("A"));
  EXPECT_EQ(best("\xFF\xFE\x41\0"s), Text("A"));
  EXPECT_EQ(best("\0\0\xFE\xFF\0\1\xF6\0"s), Text("\U0001F600"));
  EXPECT_EQ(best("\xFF\xFE\0\0\0\xF6\1\0"s), Text("\U0001F600"));
}

TEST_F(EncodingsOfFiles, AMarkThatLiesFallsThroughToTheNextRule) {
  // "UTF-8" that is not: Mac OS Roman has most letters.
  EXPECT_EQ(best("\xEF\xBB\xBF"
                 "abc\xFF"),
            Text::fromMacRoman("\xEF\xBB\xBF"
                               "abc\xFF"));
}

TEST_F(EncodingsOfFiles, ACredibleDetectionIsBelieved) {
  codecs_.detected = {{TextEncodings::utf8, 80}};
  EXPECT_EQ(best("gr\xC3\xBC\xC3\x9F"), Text("grüß"));
}

TEST_F(EncodingsOfFiles, ADetectionHardlyBetterThanChanceIsNot) {
  codecs_.detected = {{TextEncodings::utf16LittleEndian, 10}};
  EXPECT_EQ(best("abcd!!"), Text("abcd!!"));
}

TEST_F(EncodingsOfFiles, ADetectionOfFortyInAHundredIsBelievedAndOneOfLessIsNot) {
  codecs_.detected = {{TextEncodings::utf16LittleEndian, 40}};
  EXPECT_EQ(best("\x1F\x04\x40\x04"), Text("Пр"));
  codecs_.detected = {{TextEncodings::utf16LittleEndian, 39}};
  EXPECT_NE(best("\x1F\x04\x40\x04"), Text("Пр"));
}

TEST_F(EncodingsOfFiles, Utf8IsBelievedHoweverLittleADetectorMakesOfItButNotWithControlBytes) {
  codecs_.detected = {{TextEncodings::utf8, 10}};
  EXPECT_EQ(best("gr\xC3\xBC\xC3\x9F"), Text("grüß"));
  EXPECT_EQ(codecs_.asked, std::vector<TextEncoding>{TextEncodings::utf8});
  codecs_.asked.clear();
  (void)best("gr\xC3\xBC\xC3\x9F\x01");
  EXPECT_EQ(codecs_.asked.front(), TextEncodings::unicode) << "the candidates are tried instead";
}

TEST_F(EncodingsOfFiles, ADetectionThatDoesNotDecodeFallsThrough) {
  codecs_.detected = {{TextEncodings::utf8, 90}};
  EXPECT_EQ(best("h\xF6ren"), Text("hören"));
}

// Detectors take Mac OS Roman for one of the Western encodings that they know.
TEST_F(EncodingsOfFiles, AWesternGuessLeavesTheChoiceBetweenMacRomanAndLatin1) {
  codecs_.detected = {{TextEncodings::windowsLatin1, 80}};
  EXPECT_EQ(best("Gr\x9F\xA7"
                 "e, \x8A\x9A"),
            Text("Grüße, äö"));
  EXPECT_EQ(best("Gr\xFC\xDF"
                 "e, \xE4\xFC"),
            Text("Grüße, äü"));
  EXPECT_EQ(codecs_.asked, (std::vector<TextEncoding>{TextEncodings::macRoman, TextEncodings::latin1,
                                                      TextEncodings::macRoman, TextEncodings::latin1}));
}

TEST_F(EncodingsOfFiles, AWesternGuessIsNotBelievedWhenThereAreControlBytes) {
  codecs_.detected = {{TextEncodings::latin1, 60}, {TextEncodings::utf16LittleEndian, 40}};
  EXPECT_EQ(best("\x1F\x04\x40\x04"), Text("Пр"));
}

TEST_F(EncodingsOfFiles, CandidatesAreTriedInOrderAndTheHighestScoreWins) {
  EXPECT_EQ(best("h\xF6ren"), Text("hören"));
  EXPECT_EQ(codecs_.asked, (std::vector<TextEncoding>{TextEncodings::unicode, TextEncodings::macRoman,
                                                      TextEncodings::latin1, TextEncodings::utf8}));
}

TEST_F(EncodingsOfFiles, ATieKeepsTheEarlierCandidate) {
  // 0xE9 is a letter in both, and only Mac OS Roman has it as U+00C8.
  EXPECT_EQ(best("caf\xE9 \xE9"), Text("cafÈ È"));
  // An odd number of ASCII bytes is no UTF-16, and the same in the other three.
  EXPECT_EQ(best("abc"), Text("abc"));
}

TEST_F(EncodingsOfFiles, TheUnicodeCandidateMayScoreHigher) { EXPECT_EQ(best("\0a\0b"s), Text("ab")); }

TEST_F(EncodingsOfFiles, AnEmptyFileHasNoBestCandidateBecauseNaNWinsNothing) {
  EXPECT_EQ(best(""), std::nullopt);
}

class StringWithHTML : public testing::Test {
 protected:
  Text page(const std::string& bytes) const { return stringWithHTML(bytes, codecs_, log_); }
  FakeTextCodecs codecs_;
  RecordingLog log_;
};

TEST_F(StringWithHTML, ADeclaredCharacterSetWithinContentIsUsed) {
  EXPECT_EQ(page("<html><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\xC3\xA4"),
            Text("<html><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">ä"));
  EXPECT_EQ(page("<HTML><META CHARSET = \r\nUTF-8>\xC3\xA4"), Text("<HTML><META CHARSET = \r\nUTF-8>ä"));
  EXPECT_EQ(page("<html><meta charset=macintosh>\x8A"), Text("<html><meta charset=macintosh>ä"));
}

TEST_F(StringWithHTML, AQuotedValueIsNotRecognisedAndStaysLatin1) {
  EXPECT_EQ(page("<html><meta charset=\"utf-8\">\xC3\xA4"), Text("<html><meta charset=\"utf-8\">Ã¤"));
}

TEST_F(StringWithHTML, TheDeclarationIsLookedForFromTheFirstMetaToTheEndOfThePage) {
  const std::string pages[] = {
      "<html><meta name=x><meta charset=utf-8>\xC3\xA4",  // in a later element
      "<html><meta name=x><p>The charset utf-8\xC3\xA4",  // in the text of the page
      "<html><meta charsetutf-8>\xC3\xA4",                // without anything between
      "<meta charset=utf-8><p>html\xC3\xA4",              // "html" anywhere makes it a page
  };
  for (const std::string& bytes : pages) EXPECT_TRUE(page(bytes).hasSuffix("ä")) << bytes;
  EXPECT_TRUE(page("<html><meta charset!utf-8>\xC3\xA4").hasSuffix("Ã¤")) << "blanks and one sign alone";
  EXPECT_TRUE(
      page("<html><meta charset=klingon charset=utf-8>\xC3\xA4").hasSuffix("Ã¤"));  // the first counts
}

TEST_F(StringWithHTML, WithoutAnUsableDeclarationThePageIsLatin1) {
  const std::pair<std::string, Text> rows[] = {
      {"<html>\xC3\xA4", "<html>Ã¤"},                                                        // no meta
      {"<html>charset=utf-8 <meta name=x>\xC3\xA4", "<html>charset=utf-8 <meta name=x>Ã¤"},  // only before it
      {"<html><meta charset=\xC3\xA4", "<html><meta charset=Ã¤"},                            // an empty name
      {"<html><meta charset", "<html><meta charset"},  // nothing behind it
      {"<html><meta charset=", "<html><meta charset="},
      {"<html><meta charset=klingon>\xC3\xA4", "<html><meta charset=klingon>Ã¤"},  // an unknown name
      {"<html><meta charset=iso-8859-1>\xC3\xA4", "<html><meta charset=iso-8859-1>Ã¤"},
      {"<html><meta charset=utf-8>\xE4", "<html><meta charset=utf-8>ä"},  // a wrong name
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(page(bytes), text) << bytes;
  EXPECT_EQ(log_.lines(), Lines());
}

TEST_F(StringWithHTML, APageWithoutHtmlInLatinIsTriedAsUnicode) {
  EXPECT_EQ(page("\xFE\xFF\0<\0h\0T\0m\0l\0>"s), Text("<hTml>"));
  EXPECT_EQ(log_.lines(), Lines{"no HTML in Latin"});
}

TEST_F(StringWithHTML, APageWithoutHtmlInEitherIsLatin1) {
  EXPECT_EQ(page("gr\xFC\xDF"), Text("grüß"));
  EXPECT_EQ(page(""), Text(""));
  EXPECT_EQ(log_.lines(),
            (Lines{"no HTML in Latin", "no HTML in Unicode", "no HTML in Latin", "no HTML in Unicode"}));
}

class AppendToFile : public testing::Test {
 protected:
  AppendToFile() { files_.addFolder("/folder"); }
  bool append(const Text& text, const Text& path, TextEncoding encoding = TextEncodings::utf8) {
    return appendToFile(text, path, encoding, files_, handles_, codecs_);
  }
  FakeFileManager files_;
  FakeFileHandles handles_{files_};
  FakeTextCodecs codecs_;
};

TEST_F(AppendToFile, CreatesAMissingFileAndAppendsOnLaterCalls) {
  EXPECT_TRUE(append("ä", "/folder/file"));
  EXPECT_TRUE(append("b", "/folder/file"));
  EXPECT_EQ(files_.node("/folder/file")->contents,
            "\xC3\xA4"
            "b");
  EXPECT_EQ(handles_.opened, handles_.closed);
}

TEST_F(AppendToFile, WritesInTheEncodingWithoutAByteOrderMark) {
  EXPECT_TRUE(append("ä", "/folder/latin", TextEncodings::latin1));
  EXPECT_EQ(files_.node("/folder/latin")->contents, "\xE4");
  EXPECT_TRUE(append("ä", "/folder/wide", TextEncodings::unicode));
  EXPECT_EQ(files_.node("/folder/wide")->contents, "\0\xE4"s);
}

TEST_F(AppendToFile, AnEncodingThatCannotRepresentTheTextReturnsFalseAndLeavesTheFileAsItWas) {
  files_.addFile("/folder/file", "before");
  EXPECT_FALSE(append("日本", "/folder/file", TextEncodings::latin1));
  EXPECT_EQ(files_.node("/folder/file")->contents, "before");
  EXPECT_EQ(handles_.opened, handles_.closed);
}

// KEEP: the file is opened, and made, before the text is converted.
TEST_F(AppendToFile, AMissingFileIsCreatedAlsoForATextThatTheEncodingCannotRepresent) {
  EXPECT_FALSE(append("日本", "/folder/file", TextEncodings::latin1));
  ASSERT_NE(files_.node("/folder/file"), nullptr);
  EXPECT_EQ(files_.node("/folder/file")->contents, "");
}

TEST_F(AppendToFile, AnEmptyTextCreatesAnEmptyFile) {
  EXPECT_TRUE(append("", "/folder/file"));
  ASSERT_NE(files_.node("/folder/file"), nullptr);
  EXPECT_EQ(files_.node("/folder/file")->contents, "");
}

TEST_F(AppendToFile, AFileThatCannotBeOpenedOrCreatedReturnsFalse) {
  EXPECT_FALSE(append("a", "/nowhere/file"));
  EXPECT_FALSE(append("a", "/folder"));
  files_.addFile("/folder/locked", "before");
  files_.node("/folder/locked")->isWritable = false;
  EXPECT_FALSE(append("a", "/folder/locked"));
  EXPECT_EQ(files_.node("/folder/locked")->contents, "before");
}

TEST_F(AppendToFile, AFailedWriteReturnsFalseAndClosesTheFile) {
  handles_.canWrite = false;
  EXPECT_FALSE(append("a", "/folder/file"));
  EXPECT_EQ(handles_.opened, 1);
  EXPECT_EQ(handles_.closed, 1);
}

}  // namespace
}  // namespace halvorn
