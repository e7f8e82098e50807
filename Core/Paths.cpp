#include "Core/Paths.h"

#include <algorithm>

namespace halvorn::Paths {
namespace {

// The same object when nothing is to be done, as for nearly every path.
Text withSingleSlashes(const Text& path) {
  if (path.units().find(u"//") == Text::npos) return path;
  std::u16string units;
  for (const char16_t unit : path.units()) {
    if (unit != u'/' || units.empty() || units.back() != u'/') units.push_back(unit);
  }
  return Text(std::move(units));
}

// Without slashes at its end or in a row.
Text standardized(const Text& path) {
  const Text single = withSingleSlashes(path);
  return single.length() > 1 && single.hasSuffix("/") ? single.substring(0, single.length() - 1) : single;
}

std::size_t lastSlash(const Text& path) { return path.units().rfind(u'/'); }

// Where the extension's point stands in the last component; npos without extension.
std::size_t extensionPoint(const Text& name) {
  const std::size_t point = name.units().rfind(u'.');
  const bool isNone = point == Text::npos || point == 0 || point + 1 == name.length();
  return isNone ? Text::npos : point;
}

}  // namespace

Text lastComponent(const Text& path) {
  const Text trimmed = standardized(path);
  const std::size_t slash = lastSlash(trimmed);
  if (slash == Text::npos || trimmed.length() == 1) return trimmed;
  return trimmed.substring(slash + 1);
}

Text deletingLastComponent(const Text& path) {
  const Text trimmed = standardized(path);
  const std::size_t slash = lastSlash(trimmed);
  if (slash == Text::npos) return Text();
  return trimmed.substring(0, slash == 0 ? 1 : slash);
}

Text appending(const Text& path, const Text& component) {
  if (path.isEmpty() || component.isEmpty()) return standardized(path + component);
  return standardized(path + Text("/") + component);
}

Text extension(const Text& path) {
  const Text name = lastComponent(path);
  const std::size_t point = extensionPoint(name);
  return point == Text::npos ? Text() : name.substring(point + 1);
}

Text deletingExtension(const Text& path) {
  const Text trimmed = standardized(path);
  const Text name = lastComponent(trimmed);
  const std::size_t point = extensionPoint(name);
  if (point == Text::npos) return trimmed;
  return trimmed.substring(0, trimmed.length() - name.length() + point);
}

std::vector<Text> components(const Text& path) {
  std::vector<Text> result;
  if (isAbsolute(path)) result.push_back("/");
  for (const Text& part : path.split(u'/')) {
    if (!part.isEmpty()) result.push_back(part);
  }
  return result;
}

bool isAbsolute(const Text& path) { return path.hasPrefix("/"); }

Text expandingTilde(const Text& path, const Text& home, const HomeOfAccount& homeOfAccount) {
  if (!path.hasPrefix("~")) return path;
  const std::size_t end = std::min(path.find(u'/'), path.length());
  OptionalText folder = home;
  if (end > 1) folder = homeOfAccount ? homeOfAccount(path.substring(1, end - 1)) : std::nullopt;
  return folder ? appending(*folder, path.substring(end)) : path;
}

Text abbreviatingWithTilde(const Text& path, const Text& home) {
  const Text folder = standardized(home);
  if (folder.length() < 2) return path;
  if (path == folder) return "~";
  return path.hasPrefix(folder + "/") ? Text("~") + path.substring(folder.length()) : path;
}

}  // namespace halvorn::Paths
