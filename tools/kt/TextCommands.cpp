#include <charconv>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/files/FileManager.h"
#include "tools/kt/Command.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

Outcome split(const Call& call) {
  for (const Text& line : arrayOfLines(call.words[1])) call.answer({{"line", line}});
  return Outcome::Done;
}

Outcome wildcard(const Call& call) {
  if (call.words.size() != 3) return Outcome::Misused;
  const bool matches = matchesWildcardPattern(call.words[1], call.words[2]);
  call.answer({{"matches", matches}});
  return matches ? Outcome::Done : Outcome::No;
}

Outcome replace(const Call& call) {
  if (call.words.size() != 4) return Outcome::Misused;
  call.answer({{"text", call.system.regexReplacing().stringByReplacingOccurrencesOfRegexPattern(
                            call.words[1], call.words[2], call.words[3])}});
  return Outcome::Done;
}

// The text of a file of unknown encoding.
Outcome detect(const Call& call) {
  const OptionalText text = stringWithBestEncodingFromFile(call.words[1], call.system.files(),
                                                           call.system.textCodecs(), call.system.unicode());
  if (!text) return Outcome::No;
  call.answer({{"text", *text}});
  return Outcome::Done;
}

Outcome key(const Call& call) {
  const std::string digits = call.words[1].bytes();
  std::uint16_t code = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), code);
  if (read.ec != std::errc()) return Outcome::Misused;
  call.answer({{"text", stringWithVirtualKeyCode(code, 0, call.system.keyboard())}});
  return Outcome::Done;
}

// The verbs that make one text of another.
OptionalText changed(const Call& call, const Text& verb, const Text& text) {
  if (verb == Text("escape")) return stringByEscapingCharacters(text, KTEscapeCharacters);
  if (verb == Text("expand")) return stringByExpandingEscapedCharacters(text, KTEscapeCharacters);
  if (verb == Text("percent")) return stringWithPercentEscapes(text);
  if (verb == Text("html")) return stringByExpandingHTMLEntities(text, call.system.htmlText());
  if (verb == Text("md5")) return MD5String(text, call.system.digests());
  if (verb == Text("trim")) return stringByTrimmingWhitespace(text);
  return std::nullopt;
}

Outcome text(const Call& call) {
  if (call.words.size() < 2) return Outcome::Misused;
  static const std::map<Text, Command> verbs = {
      {"split", split}, {"wildcard", wildcard}, {"replace", replace}, {"detect", detect}, {"key", key}};
  if (const auto verb = verbs.find(call.words[0]); verb != verbs.end()) return verb->second(call);
  const OptionalText result = changed(call, call.words[0], call.words[1]);
  if (!result) return Outcome::Misused;
  call.answer({{"text", *result}});
  return Outcome::Done;
}

}  // namespace

const std::map<Text, Command>& textCommands() {
  static const std::map<Text, Command> commands = {{"text", text}};
  return commands;
}

}  // namespace halvorn
