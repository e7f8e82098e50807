#include "Platform/posix/ItemPlace.h"

#include <fcntl.h>

#include <string_view>
#include <vector>

#include "Platform/posix/SystemCalls.h"

namespace halvorn {
namespace {

constexpr int folderFlags = SystemCalls::openPath | O_DIRECTORY | O_CLOEXEC;

// The components of an absolute path, ".." among them; nullopt for a relative path.
std::optional<std::vector<std::string>> componentsOfAbsolute(std::string_view path) {
  if (!path.starts_with('/')) return std::nullopt;
  std::vector<std::string> components;
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const std::string_view component = path.substr(0, slash);
    if (!component.empty() && component != ".") components.emplace_back(component);
    path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
  }
  return components;
}

FileDescriptor openFolderWithoutLinks(const std::string& path) {
  const auto components = componentsOfAbsolute(path);
  if (!components) return {};
  for (const std::string& component : *components) {
    if (component == "..") return {};
  }
  if (auto folder = SystemCalls::openWithoutLinks(path, folderFlags)) return std::move(*folder);
  FileDescriptor folder(retried([&] { return ::open("/", folderFlags); }));
  for (const std::string& component : *components) {
    if (!folder) return {};
    folder = FileDescriptor(
        retried([&] { return ::openat(folder.get(), component.c_str(), folderFlags | O_NOFOLLOW); }));
  }
  return folder;
}

}  // namespace

std::optional<std::string> systemPath(const Text& path) {
  std::string bytes = path.bytes();
  if (bytes.empty() || bytes.find('\0') != std::string::npos) return std::nullopt;
  return bytes;
}

FileDescriptor openFolder(const std::string& path, LinksInTheWay links) {
  if (links == LinksInTheWay::Refused) return openFolderWithoutLinks(path);
  return FileDescriptor(retried([&] { return ::open(path.c_str(), folderFlags); }));
}

std::optional<ItemPlace> placeOf(const Text& path, LinksInTheWay links) {
  auto bytes = systemPath(path);
  if (!bytes) return std::nullopt;
  while (bytes->ends_with('/')) bytes->pop_back();
  const std::size_t slash = bytes->rfind('/');
  const bool isBare = slash == std::string::npos;
  std::string name = isBare ? *bytes : bytes->substr(slash + 1);
  if (name.empty() || name == "." || name == "..") return std::nullopt;
  const std::string folder = isBare ? "." : slash == 0 ? "/" : bytes->substr(0, slash);
  FileDescriptor descriptor = openFolder(folder, links);
  if (!descriptor) return std::nullopt;
  return ItemPlace{.folder = std::move(descriptor), .name = std::move(name)};
}

}  // namespace halvorn
