// The command line of halvorn: its options begin with two hyphens, so that those of the installer pass through.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// What a command takes.
struct Grammar {
  std::set<std::string> flags = {};    // options that stand alone
  std::set<std::string> options = {};  // options that take the word behind them
  bool takesInstallersWords = false;   // whether words with one hyphen go to the installer as they stand
};

struct Words {
  std::vector<Text> plain =
      {};  // behind the command's name; all of them for the installer where it takes them
  std::map<std::string, Text> options = {};  // "--installer PATH"; "" for an option that stands alone
  Text misused = {};                         // the first word that the grammar does not know; "" for none

  [[nodiscard]] bool has(const std::string& option) const { return options.contains(option); }
  [[nodiscard]] OptionalText value(const std::string& option) const;
};

// Of what stands behind the command's name. "-o" is "--output"; what stands behind "--" is no option.
[[nodiscard]] Words sortedWords(const std::vector<Text>& words, const Grammar& grammar);

}  // namespace halvorn
