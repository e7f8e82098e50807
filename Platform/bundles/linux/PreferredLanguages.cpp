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

bool isUntranslated(const std::string& locale) { return locale == "C" || locale == "POSIX"; }

std::vector<Text> languagesFromEnvironment(const Environment& environment) {
  std::optional<std::string> locale;
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (!locale) locale = environment.value(name);
  }
  if (locale && isUntranslated(*locale)) return {};
  std::vector<Text> languages;
  for (const Text& entry : Text(environment.value("LANGUAGE").value_or(locale.value_or(""))).split(u':')) {
    const Text language = entry.substring(0, entry.units().find_first_of(u".@"));
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
  const Text plain = language.substring(0, language.units().find_first_of(u".@"));
  if (!isPlain(plain)) return names;
  append(names, plain);
  append(names, plain.replacing("-", "_"));
  append(names, plain.replacing("_", "-"));
  appendChineseScript(names, plain);
  const Text base = plain.substring(0, plain.units().find_first_of(u"_-"));
  append(names, base);
  for (const auto& [code, name] : kOldNames) {
    if (base == Text(code)) append(names, name);
    if (base == Text(name)) append(names, code);
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
