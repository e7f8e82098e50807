#include "tools/halvorn/Words.h"

namespace halvorn {

OptionalText Words::value(const std::string& option) const {
  const auto found = options.find(option);
  return found == options.end() ? std::nullopt : OptionalText(found->second);
}

Words sortedWords(const std::vector<Text>& words, const Grammar& grammar) {
  Words sorted;
  bool areOptions = true;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool isShort = words[i] == Text("-o") && !grammar.takesInstallersWords;
    const std::string word = isShort ? "--output" : words[i].bytes();
    const bool isOption = areOptions && word.starts_with("-") && word.size() > 1 &&
                          (word.starts_with("--") || !grammar.takesInstallersWords);
    if (!isOption) {
      sorted.plain.push_back(words[i]);
    } else if (word == "--") {
      areOptions = false;
    } else if (grammar.flags.contains(word)) {
      sorted.options[word] = Text();
    } else if (grammar.options.contains(word) && i + 1 < words.size()) {
      sorted.options[word] = words[++i];
    } else if (sorted.misused.isEmpty()) {
      sorted.misused = words[i];
    }
  }
  return sorted;
}

}  // namespace halvorn
