#include "Platform/bundles/linux/Aliases.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Core/Paths.h"
#include "Platform/bundles/linux/launching/DesktopEntry.h"

namespace halvorn {

namespace {

constexpr int kLongestChain = 40;  // as the kernel has it for links

OptionalText realPathOf(const Text& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.bytes().c_str(), nullptr),
                                                         &std::free);
  return real ? OptionalText(Text(real.get())) : std::nullopt;
}

int hexadecimalDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

// "%20" is a blank; a percent sign that begins no such thing stands for itself. nullopt for a zero byte.
std::optional<std::string> withoutPercentEscapes(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? hexadecimalDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? hexadecimalDigit(text[i + 2]) : -1;
    if (low < 0) {
      result.push_back(text[i]);
      continue;
    }
    if (high == 0 && low == 0) return std::nullopt;
    result.push_back(static_cast<char>(high << 4 | low));
    i += 2;
  }
  return result;
}

// The path of a file on this computer: "file:///a%20b", "file://localhost/a", "file:/a", and plain "/a b".
OptionalText pathFromUrl(std::string_view url) {
  if (url.starts_with("/")) return Text(url);
  constexpr std::string_view scheme = "file:";
  if (!url.starts_with(scheme)) return std::nullopt;
  url.remove_prefix(scheme.size());
  if (url.starts_with("//")) {
    url.remove_prefix(2);
    const std::string_view host = url.substr(0, url.find('/'));
    if (!host.empty() && host != "localhost") return std::nullopt;
    url.remove_prefix(host.size());
  }
  if (!url.starts_with("/")) return std::nullopt;
  const auto path = withoutPercentEscapes(url);
  return path ? OptionalText(Text(*path)) : std::nullopt;
}

// Where the item leads, one step on; nullopt when it is no alias or that alias leads nowhere.
OptionalText nextOf(const Text& path, mode_t mode) {
  if (S_ISLNK(mode)) return realPathOf(path);
  if (!S_ISREG(mode) || Paths::extension(path) != Text("desktop")) return std::nullopt;
  const auto entry = DesktopEntry::read(path.bytes());
  if (!entry || entry->value("Type") != "Link") return std::nullopt;
  return pathFromUrl(entry->value("URL").value_or(""));
}

}  // namespace

OptionalText targetOfAlias(const Text& path) {
  if (path.find(u'\0') != Text::npos) return std::nullopt;
  Text current = path;
  while (current.length() > 1 && current.hasSuffix("/")) current = current.substring(0, current.length() - 1);
  for (int step = 0; step <= kLongestChain; ++step) {
    struct stat information = {};
    if (::lstat(current.bytes().c_str(), &information) != 0) return std::nullopt;
    const OptionalText next = nextOf(current, information.st_mode);
    if (!next && (step == 0 || S_ISLNK(information.st_mode))) return std::nullopt;
    if (!next) return realPathOf(current);
    current = *next;
  }
  return std::nullopt;  // a chain that bites its tail
}

}  // namespace halvorn
