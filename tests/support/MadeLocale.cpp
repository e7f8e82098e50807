#include "tests/support/MadeLocale.h"

#include <unistd.h>

#include <stdexcept>

#include "tests/support/ChildProcess.h"

namespace halvorn {

std::optional<std::string> MadeLocale::missing(const std::string& name) {
  if (!programExists("localedef")) return "localedef is not installed";
  if (::access(("/usr/share/i18n/locales/" + name).c_str(), R_OK) != 0) return "locales is not installed";
  return std::nullopt;
}

MadeLocale::MadeLocale(const std::string& name) : name_(name) {
  const CommandResult result =
      runCommand({"localedef", "-i", name, "-f", "UTF-8", folder_ / this->name()}, {}, 60);
  if (result.status != 0) throw std::runtime_error("no locale " + name + ": " + result.output);
}

std::vector<std::string> MadeLocale::environment() const {
  return {"LOCPATH=" + folder(), "LC_ALL=" + name(), "LANGUAGE=en"};
}

}  // namespace halvorn
