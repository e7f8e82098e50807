// What "Install ..." at the top of a medium is told: a file in the hidden folder beside it, whose words each end with a zero
// byte. The first is the title of what it says to a person, the second the installer's bundle, and then come the installer's
// options, each followed by a path. All paths are below the medium's top, and any byte but zero may be in them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace halvorn {

inline constexpr char kMediumFolder[] = ".halvorn";
inline constexpr char kLauncherWordsPath[] = ".halvorn/launcher-words";

struct LauncherWords {
  std::string title;
  std::string installer;
  std::vector<std::string> options;  // name, path, name, path
};

inline std::string launcherWordsFile(const LauncherWords& words) {
  std::string bytes = words.title + '\0' + words.installer + '\0';
  for (const std::string& word : words.options) bytes += word + '\0';
  return bytes;
}

// nullopt for what halvorn has not written.
inline std::optional<LauncherWords> launcherWordsIn(const std::string& bytes) {
  std::vector<std::string> words;
  std::size_t start = 0;
  for (std::size_t end = 0; (end = bytes.find('\0', start)) != std::string::npos; start = end + 1)
    words.push_back(bytes.substr(start, end - start));
  if (words.size() < 2 || words.size() % 2 != 0 || start != bytes.size()) return std::nullopt;
  return LauncherWords{words[0], words[1], {words.begin() + 2, words.end()}};
}

}  // namespace halvorn
