// A library that is missing ends a program before its first line, with a word for terminals alone. So the loader is asked first.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// Names of libraries that the installer in the bundle needs for a window on the display that there is, each once, sorted. Empty
// where there is no display, and where the loader says nothing.
struct LibrariesInTheWay {
  std::vector<std::string> missing;
  std::vector<std::string> older;  // there, but without what a newer release of them has
  [[nodiscard]] bool areNone() const { return missing.empty() && older.empty(); }
};
[[nodiscard]] LibrariesInTheWay librariesInTheWay(const std::string& bundle, const std::string& program);

// The Debian packages of those that the list in the bundle names.
[[nodiscard]] std::vector<std::string> packagesOf(const std::vector<std::string>& libraries,
                                                  const std::string& bundle);

}  // namespace halvorn
