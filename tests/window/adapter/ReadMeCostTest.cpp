// What documents cost that were made to cost a lot.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

// What the sanitizers keep beside each block and do beside each step is measured along with ours.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kShareOfSanitizers = 8;
#else
constexpr double kShareOfSanitizers = 1;
#endif
// Of the processor, until the beginning has been painted.
constexpr double kMostMilliseconds = kShareOfSanitizers * 500;
constexpr double kMostMegabytes = kShareOfSanitizers * 64;

std::string times(int count, const std::string& text) {
  std::string all;
  all.reserve(static_cast<std::size_t>(count) * text.size());
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::string sizes(const std::string& before, const std::string& after) {
  std::string all;
  for (int i = 0; i < 50'000; ++i) all += before + std::to_string(6 + i % 200) + after;
  return all;
}

struct Document {
  const char* name;
  std::function<std::string()>
      bytes;  // made where they are needed: every case of this program knows all documents
};

class ReadMeCost : public testing::TestWithParam<int> {
 public:
  static const std::vector<Document>& documents() {
    static const std::vector<Document> all = {
        {"spans.html",
         [] { return "<table>" + times(100, "<tr><td colspan=1000 rowspan=1000>x</td></tr>"); }},
        {"line.txt", [] { return times(600'000, "word "); }},
        {"letters.txt", [] { return times(3'000'000, "x"); }},
        {"ends.txt", [] { return times(8 << 20, "\n"); }},
        {"marks.txt", [] { return "a" + times(500'000, "\u0301"); }},
        {"turns.txt", [] { return times(300'000, "\u202ea\u202d"); }},
        {"bold.html", [] { return times(1 << 17, "<b>a</b>"); }},
        {"items.html", [] { return times(150, "<ul>") + times(900, "<li>x"); }},
        {"pictures.html", [] { return times(3'000, "<img width=1000000000 height=1000000000>"); }},
        {"cells.html", [] { return "<table>" + times(200, "<tr>" + times(2, "<td>" + times(200, "ab "))); }},
        {"rules.html",
         [] {
           return "<style>" + times(2'000, "div p b { color: red }") + "</style>" +
                  times(3'000, "<p><b>x</b>");
         }},
        {"sizes.html", [] { return sizes("<p style='font-size:", "pt'>x"); }},
        {"brackets.md", [] { return times(250'000, "["); }},
        {"bold.md", [] { return times(170'000, "**a** "); }},
        {"emphasis.md", [] { return times(300, "*a **b** c*\n\n"); }},
        {"quotes.md", [] { return times(4'000, times(30, "> ") + "x\n\n"); }},
        {"runs.rtf", [] { return "{\\rtf1 " + times(150'000, "{\\b a}b") + "}"; }},
        {"sizes.rtf", [] { return "{\\rtf1 " + sizes("\\fs", " a") + "}"; }},
        {"words.rtf", [] { return "{\\rtf1 " + times(2 << 20, "\\b\\b0\\b") + "}"; }},
        {"text.rtf",
         [] {
           return "{\\rtf1 " + times(30'000, times(20, "Some words of text in it. ") + "\\par\n") + "}";
         }},
        {"cells.rtf", [] {
           return "{\\rtf1 " +
                  times(24, "\\trowd" + times(40, "\\cellx100") + times(40, "x\\cell ") + "\\row ") + "}";
         }}};
    return all;
  }
};

TEST_P(ReadMeCost, StaysWithinTheBudget) {
  const TemporaryFolder folder;
  const Document& document = documents().at(static_cast<std::size_t>(GetParam()));
  std::ofstream(folder / document.name, std::ios::binary) << document.bytes();
  const CommandResult measured = runCommand(
      {KT_DOCUMENT_PROBE, folder / document.name},
      {.environment = {"QT_QPA_PLATFORM=offscreen", "LANG=C.UTF-8", "HOME=" + folder.path().string(),
                       "XDG_RUNTIME_DIR=" + folder.path().string()}});
  ASSERT_EQ(measured.status, 0) << measured.output;
  std::istringstream figures(
      measured.output.substr(measured.output.rfind('\n', measured.output.size() - 2) + 1));
  double read = 0;
  double shown = 0;
  double rest = 0;
  double megabytes = 0;
  ASSERT_TRUE(figures >> read >> shown >> rest >> megabytes) << measured.output;
  EXPECT_LE(read + shown, kMostMilliseconds) << measured.output;
  EXPECT_LE(megabytes, kMostMegabytes) << measured.output;
}

std::string nameOf(const testing::TestParamInfo<int>& info) {
  std::string name = ReadMeCost::documents().at(static_cast<std::size_t>(info.param)).name;
  name.replace(name.find('.'), 1, "_");
  return name;
}

INSTANTIATE_TEST_SUITE_P(Documents, ReadMeCost,
                         testing::Range(0, static_cast<int>(ReadMeCost::documents().size())), nameOf);

}  // namespace
}  // namespace halvorn
