#include "tools/halvorn/Anonymous.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace halvorn {
namespace {

// Bytes of other alphabets are parts of words, too.
bool isInWord(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z') || character == '_' || byte >= 0x80;
}

std::string withWord(const std::string& text, const std::string& word, const std::string& with) {
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    if (at < from) continue;
    const std::size_t end = at + word.size();
    const bool beginsWord = at == 0 || !isInWord(text[at - 1]) || !isInWord(word.front());
    const bool endsWord = end == text.size() || !isInWord(text[end]) || !isInWord(word.back());
    if (!beginsWord || !endsWord) continue;
    result += text.substr(from, at - from) + with;
    from = end;
  }
  return result + text.substr(from);
}

std::string withoutOthersFolders(std::string text) {
  for (const std::string place : {"/home/", "/run/media/", "/media/"}) {
    for (std::size_t at = text.find(place); at != std::string::npos;
         at = text.find(place, at + place.size())) {
      const std::size_t begin = at + place.size();
      std::size_t end = begin;
      while (end < text.size() && text[end] != '/' && text[end] != '"' && text[end] != ' ') ++end;
      if (end > begin && text.substr(begin, end - begin) != "PERSON")
        text.replace(begin, end - begin, "SOMEBODY");
    }
  }
  return text;
}

}  // namespace

Anonymous::Anonymous(const std::string& home, const std::string& account, const std::string& fullName,
                     const std::string& host) {
  const auto add = [this](const std::string& word, const char* with) {
    if (!word.empty() && word != "/") words_.emplace_back(word, with);
  };
  add(home, "~");
  add(account, "PERSON");
  add(fullName, "PERSON");
  std::istringstream parts(fullName);
  for (std::string part; parts >> part;) add(part, "PERSON");
  add(host, "COMPUTER");
  add(host.substr(0, host.find('.')), "COMPUTER");
  std::stable_sort(words_.begin(), words_.end(),
                   [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
}

Anonymous Anonymous::ofThisPerson() {
  char host[256] = {};
  static_cast<void>(::gethostname(host, sizeof host - 1));
  const passwd* const account = ::getpwuid(::getuid());
  const char* const home = std::getenv("HOME");
  const std::string fullName = account != nullptr ? account->pw_gecos : "";
  return {home != nullptr ? home : (account != nullptr ? account->pw_dir : ""),
          account != nullptr ? account->pw_name : "", fullName.substr(0, fullName.find(',')), host};
}

std::string Anonymous::text(const std::string& text) const {
  std::string result = text;
  for (const auto& [word, with] : words_) result = withWord(result, word, with);
  return withoutOthersFolders(result);
}

PropertyValue Anonymous::value(const PropertyValue& value) const {
  if (const Text* each = value.text()) return Text(text(each->bytes()));
  if (const PropertyArray* array = value.array()) {
    PropertyArray result;
    for (const PropertyValue& each : *array) result.push_back(this->value(each));
    return result;
  }
  if (const PropertyDictionary* dictionary = value.dictionary()) {
    PropertyDictionary result;
    for (const auto& [key, each] : *dictionary) result.emplace(Text(text(key.bytes())), this->value(each));
    return result;
  }
  return value;
}

}  // namespace halvorn
