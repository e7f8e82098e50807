// What texts and processes cost, one line for each row: its name and microseconds. Made of the adapters directly, or through
// KTSystem and the shared libraries.
//
//   rows_direct|rows_library ROUNDS
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#ifdef KT_THROUGH_THE_LIBRARY
#include "KTStuff/KTSystem.h"
#else
#include "Platform/text/posix/XmlHtmlText.h"
#include "tests/support/LiveProcesses.h"
#endif

namespace halvorn {
namespace {

#ifdef KT_THROUGH_THE_LIBRARY
struct Made {
  KTSystem system;
  const HtmlText& html = system.htmlText();
  KTProcessClass& processes = system.processes();
};
#else
struct Made {
  XmlHtmlText htmlText;
  const HtmlText& html = htmlText;
  LiveProcesses live{LiveOptions()};
  KTProcessClass& processes = live.processes;
};
#endif

Text repeated(const std::string& part, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += part;
  return all;
}

// The best of some runs: what else the machine does only makes it longer.
void measure(const char* name, int rounds, const std::function<void()>& work) {
  double best = 1e9;
  for (int i = 0; i < rounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::micro> spent = std::chrono::steady_clock::now() - start;
    best = std::min(best, spent.count());
  }
  std::printf("%s\t%.2f\n", name, best);
}

void run(int rounds) {
  Made made;
  std::size_t seen = 0;
  const Text lines = repeated("a line of an everyday text\r\n", 2'000);
  const Text words = repeated("two words\t", 1'000);
  const Text markup = repeated("<p>caf&eacute; &lt;3 and more</p>", 1'000);
  measure("lines", rounds, [&] { seen += StringExtensions::arrayOfLines(lines).size(); });
  measure("percent escapes", rounds,
          [&] { seen += StringExtensions::stringWithPercentEscapes(words).length(); });
  measure("escapes", rounds,
          [&] { seen += StringExtensions::stringByEscapingCharacters(words, KTEscapeCharacters).length(); });
  measure("markup", rounds,
          [&] { seen += StringExtensions::stringByExpandingHTMLEntities(markup, made.html).length(); });
  measure("list of processes", rounds, [&] { seen += made.processes.allProcesses().size(); });
  const auto all = made.processes.allProcesses();
  if (!all.empty()) {
    measure("1000 cached lookups", rounds, [&] {
      for (int i = 0; i < 1000; ++i)
        seen += made.processes.cachedProcessWithSerialNumber(all[0]->serialNumber()) != nullptr ? 1 : 0;
    });
  }
  if (seen == 0) std::exit(1);
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) { halvorn::run(count > 1 ? std::atoi(arguments[1]) : 20); }
