#include "Platform/bundles/linux/launching/DesktopEntry.h"

#include <algorithm>

#include "Platform/bundles/linux/PreferredLanguages.h"
#include "Platform/files/posix/BoundedFile.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestFile = 1024UL * 1024;

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t\r") - start + 1);
}

std::string unescaped(const std::string& value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      result.push_back(value[i]);
      continue;
    }
    const char next = value[++i];
    const std::size_t known = std::string_view("sntr\\").find(next);
    if (known != std::string_view::npos) {
      result.push_back(std::string_view(" \n\t\r\\")[known]);
    } else {
      result.append({'\\', next});
    }
  }
  return result;
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::read(const std::string& path) {
  const auto bytes = readRegularFile(path, kLargestFile);
  return bytes ? parse(*bytes) : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view bytes) {
  DesktopEntry entry;
  bool isInGroup = false;
  bool hasGroup = false;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = trimmed(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      isInGroup = line == "[Desktop Entry]";
      hasGroup = hasGroup || isInGroup;
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos) continue;
    entry.values_.insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                                   std::string(trimmed(line.substr(equals + 1))));
  }
  return hasGroup ? std::optional(entry) : std::nullopt;
}

std::optional<std::string> DesktopEntry::value(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(unescaped(found->second));
}

std::optional<std::string> DesktopEntry::localizedValue(const std::string& key,
                                                        const std::vector<Text>& languages) const {
  for (const Text& language : languages) {
    for (const Text& name : languageFolderNames(language)) {
      if (auto found = value(key + "[" + name.bytes() + "]")) return found;
    }
  }
  return value(key);
}

std::vector<std::string> DesktopEntry::list(const std::string& key) const {
  std::vector<std::string> parts;
  std::string part;
  for (const char character : value(key).value_or("") + ";") {
    if (character != ';') {
      part.push_back(character);
    } else if (!part.empty()) {
      parts.push_back(std::exchange(part, {}));
    }
  }
  return parts;
}

std::vector<std::string> splitExec(const std::string& exec) {
  std::vector<std::string> arguments;
  std::string argument;
  bool isOpen = false;    // an argument has begun
  bool isQuoted = false;  // within double quotes
  const std::string text = exec + " ";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char character = text[i];
    const bool isLast = i + 1 >= exec.size();
    if (isQuoted && character == '\\' && !isLast &&
        std::string_view("\"`$\\").find(text[i + 1]) != std::string_view::npos) {
      argument.push_back(text[++i]);
    } else if (character == '"') {
      isQuoted = !isQuoted;
      isOpen = true;
    } else if (character == '%' && !isLast) {
      // "%%" is a percent sign; any other pair stands for files or facts that are not given here.
      if (text[++i] == '%') {
        argument.push_back('%');
        isOpen = true;
      }
    } else if (!isQuoted && (character == ' ' || character == '\t' || character == '\n')) {
      if (isOpen) arguments.push_back(std::exchange(argument, {}));
      isOpen = false;
    } else {
      argument.push_back(character);
      isOpen = true;
    }
  }
  if (isQuoted) arguments.clear();
  return arguments;
}

std::string quotedForExec(const std::string& argument) {
  std::string result = "\"";
  for (const char character : argument) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) result.push_back('\\');
    if (character == '%') result.push_back('%');
    result.push_back(character);
  }
  return result + "\"";
}

std::string escapedValue(const std::string& value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const std::size_t special = std::string_view("\n\t\r\\").find(value[i]);
    if (special != std::string_view::npos) {
      result.append({'\\', std::string_view("ntr\\")[special]});
    } else if (value[i] == ' ' && (i == 0 || i + 1 == value.size())) {
      result.append("\\s");
    } else {
      result.push_back(value[i]);
    }
  }
  return result;
}

}  // namespace halvorn
