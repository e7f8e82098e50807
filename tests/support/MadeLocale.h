// A locale made from the system's sources in a folder of its own, so that none has to be installed.
//
//   if (const auto missing = MadeLocale::missing("de_DE")) GTEST_SKIP() << *missing;
//   const MadeLocale german("de_DE");
//   ChildProcess program({...}, {.environment = desktop.environmentWith(german.environment())});
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace halvorn {

class MadeLocale {
 public:
  // Why the locale cannot be made on this machine; nullopt when it can.
  [[nodiscard]] static std::optional<std::string> missing(const std::string& name);

  // "de_DE", in UTF-8. Throws std::runtime_error when the system cannot make it.
  explicit MadeLocale(const std::string& name);

  [[nodiscard]] std::string name() const { return name_ + ".UTF-8"; }
  [[nodiscard]] std::string folder() const { return folder_.path().string(); }  // for LOCPATH
  // The entries with which a program runs in that locale and still speaks English.
  [[nodiscard]] std::vector<std::string> environment() const;

 private:
  std::string name_;
  TemporaryFolder folder_;
};

}  // namespace halvorn
