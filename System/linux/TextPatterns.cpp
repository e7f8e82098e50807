// Codecs, regular expressions and the characters that a program defines.
#include "KTStuff/CocoaExtensions/StringExtensionsPatterns.h"
#include "KTStuff/CocoaExtensions/StringExtensionsVirtualCharacters.h"
#include "Platform/text/linux/IcuRegex.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "System/linux/Ground.h"

namespace halvorn {
namespace {

struct Patterns {
  explicit Patterns(KTSystem& system) : replacing(expressions, system.clock(), system.log()) {}

  const IcuRegex regex;
  const KTRegularExpression expressions{[this] { return &regex; }};
  const StringExtensions::RegexReplacing replacing;
};

struct Codecs {
  explicit Codecs(KTSystem&) {}
  const IcuTextCodecs codecs;
};

struct Characters {
  explicit Characters(KTSystem&) {}
  StringExtensions::VirtualCharacters characters;
};

}  // namespace

const TextCodecs& KTSystem::textCodecs() { return parts_->of<Codecs>().codecs; }
const KTRegularExpression& KTSystem::regularExpressions() { return parts_->of<Patterns>().expressions; }
const StringExtensions::RegexReplacing& KTSystem::regexReplacing() {
  return parts_->of<Patterns>().replacing;
}
StringExtensions::VirtualCharacters& KTSystem::virtualCharacters() {
  return parts_->of<Characters>().characters;
}

}  // namespace halvorn
