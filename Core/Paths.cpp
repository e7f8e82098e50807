#include "Core/Paths.h"

namespace halvorn::Paths {
namespace {

Text withoutTrailingSlashes(const Text& path) {
  std::size_t length = path.length();
  while (length > 1 && path.at(length - 1) == u'/') --length;
  return path.substring(0, length);
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
  const Text trimmed = withoutTrailingSlashes(path);
  const std::size_t slash = lastSlash(trimmed);
  if (slash == Text::npos || trimmed.length() == 1) return trimmed;
  return trimmed.substring(slash + 1);
}

Text deletingLastComponent(const Text& path) {
  const Text trimmed = withoutTrailingSlashes(path);
  const std::size_t slash = lastSlash(trimmed);
  if (slash == Text::npos) return Text();
  return withoutTrailingSlashes(trimmed.substring(0, slash == 0 ? 1 : slash));
}

Text appending(const Text& path, const Text& component) {
  if (path.isEmpty()) return component;
  if (component.isEmpty()) return path;
  return withoutTrailingSlashes(path).hasSuffix("/") ? Text("/") + component
                                                     : withoutTrailingSlashes(path) + Text("/") + component;
}

Text extension(const Text& path) {
  const Text name = lastComponent(path);
  const std::size_t point = extensionPoint(name);
  return point == Text::npos ? Text() : name.substring(point + 1);
}

Text deletingExtension(const Text& path) {
  const Text trimmed = withoutTrailingSlashes(path);
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

Text expandingTilde(const Text& path, const Text& home) {
  if (path == Text("~")) return home;
  return path.hasPrefix("~/") ? appending(home, path.substring(2)) : path;
}

Text abbreviatingWithTilde(const Text& path, const Text& home) {
  const Text folder = withoutTrailingSlashes(home);
  if (folder.length() < 2) return path;
  if (path == folder) return "~";
  return path.hasPrefix(folder + "/") ? Text("~") + path.substring(folder.length()) : path;
}

}  // namespace halvorn::Paths
