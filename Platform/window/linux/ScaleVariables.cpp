#include "Platform/window/linux/ScaleVariables.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace halvorn {
namespace {

struct Variable {
  const char* name;
  double least;
  double most;
  bool isList = false;  // "1.5;HDMI-1=2"
};

constexpr std::array<Variable, 4> kVariables = {{{"QT_SCALE_FACTOR", 0.5, 8},
                                                 {"QT_SCREEN_SCALE_FACTORS", 0.5, 8, true},
                                                 {"QT_FONT_DPI", 48, 768},
                                                 {"QT_WAYLAND_FORCE_DPI", 48, 768}}};

bool isUsable(const std::string& number, const Variable& variable) {
  char* end = nullptr;
  const double value = std::strtod(number.c_str(), &end);
  return end != number.c_str() && *end == '\0' && value >= variable.least && value <= variable.most;
}

bool areUsable(std::string_view list, const Variable& variable) {
  while (!list.empty()) {
    const std::string_view entry = list.substr(0, list.find(';'));
    list.remove_prefix(entry.size() == list.size() ? entry.size() : entry.size() + 1);
    const auto equals = entry.rfind('=');
    const std::string number(equals == std::string_view::npos ? entry : entry.substr(equals + 1));
    if (!isUsable(number, variable)) return false;
  }
  return true;
}

}  // namespace

std::vector<std::string> removeUnusableScales() {
  std::vector<std::string> removed;
  for (const Variable& variable : kVariables) {
    const char* found = std::getenv(variable.name);
    const std::string value = found != nullptr ? found : "";
    if (value.empty() || (variable.isList ? areUsable(value, variable) : isUsable(value, variable))) continue;
    ::unsetenv(variable.name);
    removed.push_back(std::string(variable.name) + "=" + value);
  }
  return removed;
}

}  // namespace halvorn
