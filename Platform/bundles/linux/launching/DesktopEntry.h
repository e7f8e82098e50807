// Files of the desktop's own format: desktop entries, autostart entries, ".directory" files.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class DesktopEntry {
 public:
  // The group "[Desktop Entry]" of the file; nullopt when there is none or the
  // file is unreadable or over 1 MB.
  [[nodiscard]] static std::optional<DesktopEntry> read(const std::string& path);
  [[nodiscard]] static std::optional<DesktopEntry> parse(std::string_view bytes);

  // With \s, \n, \t, \r and \\ resolved; nullopt when the key is missing.
  [[nodiscard]] std::optional<std::string> value(const std::string& key) const;
  // The value of "Key[language]" for the first language that has one, else of "Key".
  [[nodiscard]] std::optional<std::string> localizedValue(const std::string& key,
                                                          const std::vector<Text>& languages) const;
  [[nodiscard]] bool isTrue(const std::string& key) const { return value(key) == "true"; }
  // The parts of a list, "a;b;".
  [[nodiscard]] std::vector<std::string> list(const std::string& key) const;

 private:
  std::map<std::string, std::string> values_;  // as written
};

// The program and arguments of an Exec value, its quoting resolved and its field codes (%f, %U ...) dropped;
// empty when the quoting is wrong.
[[nodiscard]] std::vector<std::string> splitExec(const std::string& exec);
// The other way: one quoted argument for an Exec value.
[[nodiscard]] std::string quotedForExec(const std::string& argument);
// A value as it is written into a file.
[[nodiscard]] std::string escapedValue(const std::string& value);

}  // namespace halvorn
