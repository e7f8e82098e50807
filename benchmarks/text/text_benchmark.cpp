// The everyday operations on texts beside the call that one would pick without them.
//
//   text_benchmark [largest size in units] [pairs per measurement]
//
// One row for each operation, rival and size: nanoseconds per unit of ours and theirs, and how many times as
// long theirs takes. Both must have come to the same result, else the program ends. Parts of texts own their
// units, as the rivals' strings do; the rows of views, which own nothing and die with the text, tell what
// that costs. The last table is the growth: nanoseconds per unit at the largest size by those at 1 KB.
#include <fnmatch.h>
#include <glib.h>
#include <unicode/schriter.h>
#include <unicode/ucol.h>
#include <unicode/unistr.h>
#include <unicode/uregex.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "benchmarks/text/PairedRuns.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

std::u16string repeatedUnits(std::u16string_view part, std::size_t units) {
  std::u16string result;
  while (result.size() < units) result.append(part);
  result.resize(units);
  if (U16_IS_LEAD(result.back())) result.back() = u' ';  // no half pairs
  return result;
}

// ICU's regular expressions, closed at the end.
struct IcuExpression {
  explicit IcuExpression(const char16_t* pattern) { handle = uregex_open(pattern, -1, 0, nullptr, &error); }
  ~IcuExpression() { uregex_close(handle); }
  IcuExpression(const IcuExpression&) = delete;
  IcuExpression& operator=(const IcuExpression&) = delete;
  UErrorCode error = U_ZERO_ERROR;
  URegularExpression* handle = nullptr;
};

// The fields without the end of each, in the way of the standard library.
template <typename String>
std::vector<String> fieldsOf(const String& plain) {
  std::vector<String> parts;
  std::size_t start = 0;
  for (std::size_t at = 0; (at = plain.find(u',', start)) != String::npos; start = at + 1) {
    parts.push_back(plain.substr(start, at - start));
  }
  if (start < plain.size()) parts.push_back(plain.substr(start));
  return parts;
}

template <typename String>
String trimmedOf(const String& plain) {
  constexpr std::u16string_view kBlanks = u" \t\n\r\v\f\u00A0";
  const std::size_t first = plain.find_first_not_of(kBlanks);
  return plain.substr(first, plain.find_last_not_of(kBlanks) - first + 1);
}

std::u16string normalisedOf(const std::u16string& plain) {
  std::u16string result;
  result.reserve(plain.size());
  std::size_t start = 0;
  for (std::size_t at = 0; (at = plain.find(u'\r', start)) != std::u16string::npos;) {
    result.append(plain, start, at - start).push_back(u'\n');
    start = at + (plain.compare(at, 2, u"\r\n") == 0 ? 2 : 1);
  }
  return result.append(plain, start);
}

std::int32_t lengthOf(const std::u16string& units) { return static_cast<std::int32_t>(units.size()); }

// Whether the rival's result stands on its own.
enum class Rival { Owner, View };

void require(bool isSame, const char* operation) {
  if (isSame) return;
  std::fprintf(stderr, "%s: the results differ\n", operation);
  std::exit(1);
}

class Benchmark {
 public:
  // rows: where each row is written, too, with everything that was measured; null for nowhere.
  Benchmark(std::size_t largest, int pairs, std::FILE* rows)
      : largest_(largest), runs_(pairs, 0.004), rows_(rows) {}

  void run() {
    std::printf("%-20s %-34s %9s %9s %9s %8s\n", "operation", "rival", "units", "ours", "theirs", "ratio");
    for (std::size_t units = 1 << 10; units <= largest_; units *= 10) {
      trimming(units);
      splitting(units);
      normalising(units);
      wildcards(units);
      comparing(units);
      iterating(units);
      percentEscapes(units);
    }
    std::printf("\n%-20s %s\n", "operation", "nanoseconds per unit: largest size by 1 KB");
    for (const auto& [operation, times] : perUnit_) {
      std::printf("%-20s %.2f\n", operation.c_str(), times.rbegin()->second / times.begin()->second);
    }
    std::fprintf(stderr, "%zu\n", runs_.total() % 10);
  }

 private:
  void row(const char* operation, const char* rival, std::size_t units, const PairedRuns::Call& ours,
           const PairedRuns::Call& theirs, Rival kind = Rival::Owner) {
    require(ours() == theirs(), operation);
    const PairedResult result = runs_.measure(ours, theirs);
    const auto each = static_cast<double>(units);
    std::printf("%-20s %-34s %9zu %9.3f %9.3f %8.2f%s\n", operation, rival, units,
                result.ourNanoseconds / each, result.theirNanoseconds / each, result.ratio,
                result.ratio >= 1 || kind == Rival::View ? "" : "  BEHIND");
    std::fflush(stdout);
    if (rows_) write(operation, rival, units, result, kind);
    perUnit_[operation][units] = result.ourNanoseconds / each;
  }

  // Words between tabs: what it is, whether it is to be ahead, then ours and theirs of each pair in nanoseconds.
  void write(const char* operation, const char* rival, std::size_t units, const PairedResult& result,
             Rival kind) {
    std::fprintf(rows_, "%s\t%s\t%zu\t%s", operation, rival, units, kind == Rival::View ? "view" : "owner");
    for (const double nanoseconds : result.ours) std::fprintf(rows_, "\t%.1f", nanoseconds);
    for (const double nanoseconds : result.theirs) std::fprintf(rows_, "\t%.1f", nanoseconds);
    std::fputc('\n', rows_);
  }

  void trimming(std::size_t units) {
    const std::u16string plain = u" \t\n" + repeatedUnits(u"text and text ", units - 6) + u" \r\n";
    const Text text(plain);
    const icu::UnicodeString icuText(plain.data(), lengthOf(plain));
    const auto ours = [&] { return stringByTrimmingWhitespace(text).length(); };
    row("trimming", "icu::UnicodeString::trim", units, ours, [&] {
      icu::UnicodeString copy(icuText);
      return static_cast<std::size_t>(copy.trim().length());
    });
    require(stringByTrimmingWhitespace(text).units() == trimmedOf(plain), "trimming");
    row("trimming", "u16string::find_first_not_of", units, ours, [&] { return trimmedOf(plain).size(); });
    const std::u16string_view view = plain;
    row(
        "trimming", "u16string_view (a view)", units, ours, [&] { return trimmedOf(view).size(); },
        Rival::View);
  }

  void splitting(std::size_t units) {
    const std::u16string plain = repeatedUnits(u"first field,second,and a third field,4,", units);
    const Text text(plain);
    const auto ours = [&] { return componentsSeparatedByCharacter(text, u',').size(); };
    const IcuExpression comma(u",");
    std::u16string buffer(plain.size() * 2 + 16, u'\0');
    std::vector<UChar*> starts(plain.size() / 2 + 2);
    row("splitting", "uregex_split", units, ours, [&] {
      UErrorCode error = U_ZERO_ERROR;
      uregex_setText(comma.handle, plain.data(), lengthOf(plain), &error);
      const std::int32_t count =
          uregex_split(comma.handle, buffer.data(), lengthOf(buffer), nullptr, starts.data(),
                       static_cast<std::int32_t>(starts.size()), &error);
      std::vector<icu::UnicodeString> parts;
      for (std::int32_t i = 0; i < count; ++i) parts.emplace_back(starts[static_cast<std::size_t>(i)]);
      return parts.size();
    });
    const std::vector<Text> parts = componentsSeparatedByCharacter(text, u',');
    const std::vector<std::u16string> fields = fieldsOf(plain);
    require(std::ranges::equal(parts, fields, {}, &Text::units), "splitting");
    row("splitting", "u16string::find and substr", units, ours, [&] { return fieldsOf(plain).size(); });
    const std::u16string_view view = plain;
    row(
        "splitting", "u16string_view (a view)", units, ours, [&] { return fieldsOf(view).size(); },
        Rival::View);
  }

  void normalising(std::size_t units) {
    const std::u16string plain =
        repeatedUnits(u"a line of text with some words in it\r\nand another one\n", units);
    const Text text(plain);
    const Text separator = "\n";
    const IcuExpression breaks(u"\\r\\n?");
    std::u16string buffer(plain.size() + 16, u'\0');
    const auto ours = [&] { return withLineSeparator(text, separator).length(); };
    require(withLineSeparator(text, separator).units() == normalisedOf(plain), "line normalisation");
    row("line normalisation", "uregex_replaceAll", units, ours, [&] {
      UErrorCode error = U_ZERO_ERROR;
      uregex_setText(breaks.handle, plain.data(), lengthOf(plain), &error);
      const std::int32_t length =
          uregex_replaceAll(breaks.handle, u"\n", 1, buffer.data(), lengthOf(buffer), &error);
      return std::u16string(buffer, 0, static_cast<std::size_t>(length)).size();
    });
    row("line normalisation", "u16string::find and append", units, ours,
        [&] { return normalisedOf(plain).size(); });
  }

  void wildcards(std::size_t units) {
    const std::u16string plain =
        u"start" + repeatedUnits(u"some words in the middle ", units - 16) + u"needle-x-end";
    const Text text(plain);
    const Text pattern = "start*needle*end";
    const std::string bytes = text.bytes();
    const auto ours = [&] { return static_cast<std::size_t>(matchesWildcardPattern(text, pattern)); };
    const IcuExpression expression(u"start.*needle.*end");
    row("wildcard match", "uregex_matches", units, ours, [&] {
      UErrorCode error = U_ZERO_ERROR;
      uregex_setText(expression.handle, plain.data(), lengthOf(plain), &error);
      return static_cast<std::size_t>(uregex_matches(expression.handle, 0, &error));
    });
    row("wildcard match", "fnmatch (UTF-8)", units, ours,
        [&] { return static_cast<std::size_t>(fnmatch("start*needle*end", bytes.c_str(), 0) == 0); });
  }

  void comparing(std::size_t units) {
    const std::u16string start = repeatedUnits(u"file 123 of 7 ", units - 4);
    const std::u16string plain = start + u"9   ";
    const std::u16string other = start + u"10  ";
    const Text a(plain), b(other);
    const std::string aBytes = a.bytes(), bBytes = b.bytes();
    const auto ours = [&] {
      return static_cast<std::size_t>(numericCompare(a, b, unicode_) == Ordering::Ascending);
    };
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UCollator, decltype(&ucol_close)> collator(ucol_open("", &error), &ucol_close);
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
    row("numeric compare", "ucol_strcoll, numeric", units, ours, [&] {
      return static_cast<std::size_t>(ucol_strcoll(collator.get(), a.units().data(), lengthOf(plain),
                                                   b.units().data(), lengthOf(other)) == UCOL_LESS);
    });
    row("numeric compare", "strverscmp (UTF-8)", units, ours,
        [&] { return static_cast<std::size_t>(strverscmp(aBytes.c_str(), bBytes.c_str()) < 0); });
  }

  void iterating(std::size_t units) {
    const std::u16string plain =
        repeatedUnits(u"some words and an emoji \U0001F600 now and then, \u65E5\u672C as well ", units);
    const Text text(plain);
    const icu::UnicodeString icuText(plain.data(), lengthOf(plain));
    const auto ours = [&] {
      std::size_t sum = 0;
      forUTF32Characters(text, [&](char32_t scalar) { sum += scalar; });
      return sum;
    };
    row("scalar iteration", "icu::StringCharacterIterator", units, ours, [&] {
      std::size_t sum = 0;
      icu::StringCharacterIterator iterator(icuText);
      for (iterator.setToStart(); iterator.hasNext();)
        sum += static_cast<std::size_t>(iterator.next32PostInc());
      return sum;
    });
    // The same memory: at the largest size it is memory that counts.
    const std::u16string_view same = text.units();
    row("scalar iteration", "U16_NEXT", units, ours, [&] {
      std::size_t sum = 0;
      for (std::size_t i = 0; i < same.size();) {
        UChar32 scalar = 0;
        U16_NEXT(same.data(), i, same.size(), scalar);
        sum += static_cast<std::size_t>(scalar);
      }
      return sum;
    });
  }

  void percentEscapes(std::size_t units) {
    const std::u16string plain =
        repeatedUnits(u"/folder name/file n\u00E4me with words.txt?key=value&other=", units);
    const Text text(plain);
    const std::string bytes = text.bytes();
    row(
        "percent escaping", "g_uri_escape_string (UTF-8)", units,
        [&] { return stringWithPercentEscapes(text).length(); },
        [&] {
          char* const escaped = g_uri_escape_string(bytes.c_str(), ":/?@!$&'()*+,;=", FALSE);
          const std::size_t length = std::strlen(escaped);
          g_free(escaped);
          return length;
        });
    const Text escaped = stringWithPercentEscapes(text);
    const std::string escapedBytes = escaped.bytes();
    const std::size_t bytesBeyondUnits = bytes.size() - text.length();  // the rival counts bytes
    row(
        "percent expanding", "g_uri_unescape_string (UTF-8)", units,
        [&] { return stringWithExpandedPercentEscapes(escaped).length() + bytesBeyondUnits; },
        [&] {
          char* const expanded = g_uri_unescape_string(escapedBytes.c_str(), nullptr);
          const std::size_t length = g_utf8_validate(expanded, -1, nullptr) ? std::strlen(expanded) : 0;
          g_free(expanded);
          return length;
        });
  }

  std::size_t largest_;
  PairedRuns runs_;
  std::FILE* rows_;
  IcuUnicode unicode_;
  std::map<std::string, std::map<std::size_t, double>> perUnit_;
};

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) {
  const std::size_t largest = count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 10'240'000;
  const int pairs = count > 2 ? std::atoi(arguments[2]) : 15;
  // As in the product: once a program has had a second thread, reference counts and the allocator take care.
  std::thread([] {}).join();
  std::FILE* rows = count > 3 ? std::fopen(arguments[3], "w") : nullptr;
  if (count > 3 && !rows) return 1;
  halvorn::Benchmark(largest, pairs, rows).run();
  return rows && std::fclose(rows) != 0 ? 1 : 0;
}
