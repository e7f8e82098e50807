// The argument dictionary: what the command line said, by key without its leading "-".
#pragma once

#include <map>
#include <variant>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// Thread: filled on the main thread during start-up; afterwards read-only and so readable on any.
class ArgumentDictionary {
 public:
  // The text under the key; nullopt when absent or a list.
  [[nodiscard]] OptionalText text(const Text& key) const;
  // The list under the key; null when absent or a text.
  [[nodiscard]] const std::vector<Text>* list(const Text& key) const;
  [[nodiscard]] bool has(const Text& key) const;

  void set(const Text& key, const Text& value);
  void set(const Text& key, std::vector<Text> values);
  void append(const Text& key, const Text& value);  // makes the list at the first value
  void remove(const Text& key);

  // One line for the log, keys in order: {"productName" = "Foo"; "quitCode" = ("ABCD"); }
  [[nodiscard]] Text description() const;

 private:
  std::map<Text, std::variant<Text, std::vector<Text>>> entries_;
};

}  // namespace halvorn
