// halvorn check: a product as the installer will read it.
#include <filesystem>

#include "tools/halvorn/Check.h"
#include "tools/halvorn/Plan.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

void sayFacts(const Call& call, const PropertyDictionary& facts) {
  const auto line = [&](const char* title, const char* key) {
    if (facts.contains(key)) call.say(title + shown(textIn(facts, key)));
  };
  line("Product:    ", "name");
  line("Version:    ", "version");
  line("Needs:      ", "minimumSystem");
  line("Signature:  ", "signature");
  line("Identifier: ", "identifier");
  if (const auto program = facts.find("program"); program != facts.end())
    call.say("Program:    " + shown(textIn(*program->second.dictionary(), "path")));
  if (const auto icon = facts.find("icon"); icon != facts.end()) {
    std::string sizes;
    for (const PropertyValue& size : *icon->second.dictionary()->at("sizes").array())
      sizes.append(" ").append(std::to_string(*size.integer()));
    call.say("Icon:       " + shown(textIn(*icon->second.dictionary(), "file")) + sizes);
  }
  std::string languages;
  for (const auto& [locale, name] : *facts.at("names").dictionary())
    if (!locale.isEmpty()) languages.append(" ").append(shown(locale));
  if (!languages.empty()) call.say("Names in:  " + languages);
  const PropertyDictionary& texts = *facts.at("texts").dictionary();
  for (const char* key : {"title", "name", "intro", "explanation"})
    call.say("Shows:      " + shown(textIn(texts, key)));
  for (const PropertyValue& value : *facts.at("findings").array()) {
    const PropertyDictionary& finding = *value.dictionary();
    const std::string key = shown(textIn(finding, "key"));
    call.say(shown(textIn(finding, "level")) + ": " + (key.empty() ? "" : key + ": ") +
             shown(textIn(finding, "problem")) + "\n  " + shown(textIn(finding, "mend")));
  }
}

}  // namespace

Ending check(const Call& call) {
  if (call.words.plain.size() != 1) return Ending::Misused;
  std::error_code problem;
  const fs::path bundle = fs::absolute(call.words.plain.front().bytes(), problem).lexically_normal();
  const Text path(bundle.has_filename() ? bundle.string() : bundle.parent_path().string());
  if (!fs::is_directory(bundle, problem)) {
    call.complain("there is no folder " + shown(path));
    return Ending::NoInput;
  }
  const OptionalText installer = installerFor(call);
  if (!installer) {
    call.complain("no installer's bundle was found; name it with --installer");
    return Ending::NoInput;
  }
  InstallerSteps steps({.installer = *installer, .arguments = {"-sourcePath", path}});
  steps.begin();
  PropertyDictionary facts = checkOf(steps, path);
  const Ending ending = *facts.at("ok").boolean() ? Ending::Done : Ending::No;
  put(facts, "status", static_cast<int>(ending));
  if (call.isJson()) {
    call.sayJson(facts);
  } else {
    sayFacts(call, facts);
  }
  return ending;
}

}  // namespace halvorn
