#include "Platform/bundles/linux/PreferredLanguages.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "Platform/bundles/linux/OldPropertyList.h"

namespace halvorn {
namespace {

// How bundles of the flat layout and old ones name their folders.
constexpr std::array<std::pair<const char*, const char*>, 16> kOldNames = {{{"en", "English"},
                                                                            {"de", "German"},
                                                                            {"fr", "French"},
                                                                            {"es", "Spanish"},
                                                                            {"it", "Italian"},
                                                                            {"ja", "Japanese"},
                                                                            {"nl", "Dutch"},
                                                                            {"sv", "Swedish"},
                                                                            {"da", "Danish"},
                                                                            {"nb", "Norwegian"},
                                                                            {"fi", "Finnish"},
                                                                            {"pt", "Portuguese"},
                                                                            {"ru", "Russian"},
                                                                            {"pl", "Polish"},
                                                                            {"hu", "Hungarian"},
                                                                            {"ko", "Korean"}}};
// What the same language is called elsewhere, or was called before.
constexpr std::array<std::pair<const char*, const char*>, 5> kOtherNames = {
    {{"nb", "no"}, {"he", "iw"}, {"id", "in"}, {"fil", "tl"}, {"sr_Latn", "sh"}}};

void append(std::vector<Text>& names, const Text& name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

// A name of a folder and nothing more.
bool isPlain(const Text& name) {
  return !name.isEmpty() && name.find(u'/') == Text::npos && name.find(u'\0') == Text::npos &&
         !name.hasPrefix(".");
}

std::vector<Text> languagesFromArgument(const Text& argument) {
  std::vector<Text> languages;
  const auto list = readOldPropertyList(argument, PropertyListLimits{});
  if (list && list->text()) languages.push_back(*list->text());
  if (list && list->array()) {
    for (const PropertyValue& value : *list->array()) {
      if (value.text()) languages.push_back(*value.text());
    }
  }
  std::erase_if(languages, [](const Text& language) { return !isPlain(language); });
  return languages;
}

// The value behind the option. A list that was split at its blanks comes in several arguments: "(de," "en)".
Text valueFrom(std::vector<Text>::const_iterator first, std::vector<Text>::const_iterator end) {
  Text value = *first;
  while (value.hasPrefix("(") && !value.contains(")") && ++first != end) value = value + Text(" ") + *first;
  return value;
}

// A locale names its script behind its country, a folder before it: "sr_RS@latin" -> "sr_Latn_RS".
Text withoutModifier(const Text& locale) {
  const Text plain = locale.substring(0, locale.units().find_first_of(u".@"));
  const std::size_t base = plain.units().find_first_of(u"_-");
  const Text language = plain.substring(0, base);
  const Text rest = base == Text::npos ? Text() : plain.substring(base);
  if (locale.hasSuffix("@latin")) return language + Text("_Latn") + rest;
  if (locale.hasSuffix("@cyrillic")) return language + Text("_Cyrl") + rest;
  return plain;
}

bool isUntranslated(const std::string& locale) { return locale == "C" || locale == "POSIX"; }

std::vector<Text> languagesFromEnvironment(const Environment& environment) {
  std::optional<std::string> locale;
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (!locale) locale = environment.value(name);
  }
  if (locale && isUntranslated(*locale)) return {};
  std::vector<Text> languages;
  for (const Text& entry : Text(environment.value("LANGUAGE").value_or(locale.value_or(""))).split(u':')) {
    const Text language = withoutModifier(entry);
    if (isPlain(language) && !isUntranslated(language.bytes())) append(languages, language);
  }
  return languages;
}

// Chinese is told apart by its script, which names of countries imply.
void appendChineseScript(std::vector<Text>& names, const Text& language) {
  if (!language.hasPrefix("zh")) return;
  const bool isTraditional = language.hasSuffix("TW") || language.hasSuffix("HK") ||
                             language.hasSuffix("MO") || language.contains("Hant");
  append(names, isTraditional ? "zh-Hant" : "zh-Hans");
  append(names, isTraditional ? "zh_TW" : "zh_CN");
}

// "sr_Latn_RS" -> "sr_Latn": a folder for the script stands above one for all scripts.
void appendScript(std::vector<Text>& names, const Text& language) {
  const Text underscored = language.replacing("-", "_");
  const std::vector<Text> parts = underscored.split(u'_');
  if (parts.size() < 3 || parts[1].length() != 4) return;
  append(names, parts[0] + Text("_") + parts[1]);
  append(names, parts[0] + Text("-") + parts[1]);
}

}  // namespace

std::vector<Text> preferredLanguages(const std::vector<Text>& arguments, const Environment& environment) {
  const auto option = std::find(arguments.begin(), arguments.end(), Text("-AppleLanguages"));
  if (option != arguments.end() && option + 1 != arguments.end()) {
    std::vector<Text> languages = languagesFromArgument(valueFrom(option + 1, arguments.end()));
    if (!languages.empty()) return languages;
  }
  return languagesFromEnvironment(environment);
}

std::vector<Text> languageFolderNames(const Text& language) {
  std::vector<Text> names;
  const Text plain = withoutModifier(language);
  if (!isPlain(plain)) return names;
  append(names, plain);
  append(names, plain.replacing("-", "_"));
  append(names, plain.replacing("_", "-"));
  appendChineseScript(names, plain);
  appendScript(names, plain);
  const Text base = plain.substring(0, plain.units().find_first_of(u"_-"));
  append(names, base);
  for (const auto& [code, name] : kOldNames) {
    if (base == Text(code)) append(names, name);
    if (base == Text(name)) append(names, code);
  }
  for (const auto& [name, other] : kOtherNames) {
    if (base == Text(name)) append(names, other);
    if (base == Text(other)) append(names, name);
  }
  return names;
}

std::vector<Text> fallbackLanguageFolderNames(const OptionalText& developmentRegion) {
  std::vector<Text> names = {"Base"};
  for (const Text& language : {developmentRegion.value_or("en"), Text("en")}) {
    for (const Text& name : languageFolderNames(language)) append(names, name);
  }
  return names;
}

}  // namespace halvorn
