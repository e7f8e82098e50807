#include "tests/window/adapter/PseudoLanguage.h"

#include <filesystem>
#include <regex>

#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

constexpr char kFiller[] =
    "ȯñë ţŵö ţĥŕéé ƒöũŕ ƒïṽé šíẋ šéṽéñ éîĝħţ ñîñé ţéñ éļéṽéñ ţŵéļṽé ţĥîŕţééñ ƒöũŕţééñ ƒïƒţééñ "
    "šîẋţééñ šéṽéñţééñ éîĝħţééñ ñîñéţééñ ţŵéñţý ţŵéñţý-öñé ţŵéñţý-ţŵö ţŵéñţý-ţĥŕéé";

// So many characters of the filler, each of one code point.
std::string filler(std::size_t characters) {
  std::string text;
  for (const char* at = kFiller; *at != '\0'; ++at) {
    const bool begins = (static_cast<unsigned char>(*at) & 0xC0U) != 0x80U;
    if (begins && characters-- == 0) break;
    text.push_back(*at);
  }
  return text;
}

}  // namespace

void writePseudoLanguage(const std::string& resources, const std::string& language, int longerPerCent,
                         bool mirrored) {
  const std::string english = contentsOf(resources + "/en.lproj/Localizable.strings");
  static const std::regex entry(R"re(^"((?:[^"\\\n]|\\.)*)" = "((?:[^"\\\n]|\\.)*)";$)re",
                                std::regex::multiline);
  std::string table;
  for (std::sregex_iterator it(english.begin(), english.end(), entry), end; it != end; ++it) {
    std::string text = (*it)[2];
    if ((*it)[1] == "LayoutDirection") {
      text = mirrored ? "RTL" : "LTR";
    } else if (longerPerCent > 0 && text.size() > 1) {
      text += " " + filler(text.size() * static_cast<std::size_t>(longerPerCent) / 100);
    }
    table += "\"" + (*it)[1].str() + "\" = \"" + text + "\";\n";
  }
  std::filesystem::create_directories(resources + "/" + language + ".lproj");
  putFile(resources + "/" + language + ".lproj/Localizable.strings", table);
}

}  // namespace halvorn
