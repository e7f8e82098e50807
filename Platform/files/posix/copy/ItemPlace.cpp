#include "Platform/files/posix/copy/ItemPlace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

int folderFlags() { return SystemCalls::openPath | O_DIRECTORY | O_CLOEXEC; }

using Components = std::vector<std::string>;

// The components of an absolute path; nullopt for a relative one and for one with ".." in it.
std::optional<Components> plainComponents(std::string_view path) {
  if (!path.starts_with('/')) return std::nullopt;
  Components components;
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const std::string_view component = path.substr(0, slash);
    if (component == "..") return std::nullopt;
    if (!component.empty() && component != ".") components.emplace_back(component);
    path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
  }
  return components;
}

// Step by step, for kernels without a call that does it at once. No step goes up or through a link.
FileDescriptor walk(FileDescriptor folder, Components::const_iterator at, Components::const_iterator end) {
  for (; at != end && folder; ++at) {
    folder = FileDescriptor(
        retried([&] { return ::openat(folder.get(), at->c_str(), folderFlags() | O_NOFOLLOW); }));
  }
  return folder;
}

FileDescriptor openBeneath(FileDescriptor folder, Components::const_iterator at,
                           Components::const_iterator end) {
  if (!folder || at == end) return folder;
  std::string path;
  for (auto component = at; component != end; ++component) path += (path.empty() ? "" : "/") + *component;
  const auto resolution = SystemCalls::Resolution::BeneathWithoutLinks;
  if (auto found = SystemCalls::openResolving(folder.get(), path, folderFlags(), resolution))
    return std::move(*found);
  return walk(std::move(folder), at, end);
}

using Operation = Cause::Operation;

// Where no link is followed, one says that it is no folder, or that there are too many of them.
Cause causeWithoutLinks() {
  if (errno == ELOOP || errno == ENOTDIR) {
    return Cause::ofOurs(Operation::Reach, "a link or something else that is no folder is in the way");
  }
  return Cause::ofSystem(Operation::Reach);
}

Cause causeOfNoPlainPath() {
  return Cause::ofOurs(Operation::Reach, "the path is relative or goes up with \"..\"");
}

FileDescriptor openRoot() {
  return FileDescriptor(retried([&] { return ::open("/", folderFlags()); }));
}

FileDescriptor duplicate(const FileDescriptor& folder) {
  return FileDescriptor(::fcntl(folder.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

// `open` answers the folder of the given path.
template <typename Open>
OrCause<ItemPlace> placeIn(const Text& path, const Open& open) {
  auto bytes = systemPath(path);
  if (!bytes) return Cause::ofOurs(Operation::Reach, "the path is empty or has a NUL in it");
  while (bytes->ends_with('/')) bytes->pop_back();
  const std::size_t slash = bytes->rfind('/');
  const bool isBare = slash == std::string::npos;
  std::string name = isBare ? *bytes : bytes->substr(slash + 1);
  if (name.empty() || name == "." || name == "..")
    return Cause::ofOurs(Operation::Reach, "the path names nothing in a folder");
  const std::string folder = isBare ? "." : slash == 0 ? "/" : bytes->substr(0, slash);
  auto opened = open(folder);
  if (!opened) return opened.cause();
  return ItemPlace{.folder = std::move(*opened), .name = std::move(name), .path = path.bytes()};
}

}  // namespace

std::optional<std::string> systemPath(const Text& path) {
  std::string bytes = path.bytes();
  if (bytes.empty() || bytes.find('\0') != std::string::npos) return std::nullopt;
  return bytes;
}

OrCause<FileDescriptor> openFolder(const std::string& path, LinksInTheWay links) {
  FileDescriptor folder;
  switch (links) {
    case LinksInTheWay::Refused: {
      const auto components = plainComponents(path);
      if (!components) return causeOfNoPlainPath();
      folder = openBeneath(openRoot(), components->begin(), components->end());
      if (!folder) return causeWithoutLinks();
      return folder;
    }
    case LinksInTheWay::FollowedOnDisk: {
      const auto resolution = SystemCalls::Resolution::WithoutProcessLinks;
      if (auto found = SystemCalls::openResolving(AT_FDCWD, path, folderFlags(), resolution)) {
        if (!*found) return Cause::ofSystem(Operation::Reach);
        return std::move(*found);
      }
      break;
    }
    case LinksInTheWay::Followed:
      break;
  }
  folder = FileDescriptor(retried([&] { return ::open(path.c_str(), folderFlags()); }));
  if (!folder) return Cause::ofSystem(Operation::Reach);
  return folder;
}

OrCause<FileDescriptor> FolderPins::open(const std::string& path) {
  const auto components = plainComponents(path);
  if (!components) return causeOfNoPlainPath();
  const std::lock_guard lock(mutex_);
  // From the nearest folder above that is held already.
  Components above = *components;
  while (!above.empty() && !folders_.contains(above)) above.pop_back();
  const auto held = folders_.find(above);
  const auto rest = components->begin() + static_cast<std::ptrdiff_t>(above.size());
  FileDescriptor folder =
      openBeneath(held != folders_.end() ? duplicate(held->second) : openRoot(), rest, components->end());
  if (!folder) return causeWithoutLinks();
  if (!folders_.contains(*components)) {
    FileDescriptor pin = duplicate(folder);
    if (!pin) return Cause::ofSystem(Operation::Reach);
    folders_.emplace(*components, std::move(pin));
  }
  return folder;
}

OrCause<ItemPlace> placeOf(const Text& path, LinksInTheWay links) {
  return placeIn(path, [&](const std::string& folder) { return openFolder(folder, links); });
}

OrCause<ItemPlace> placeOf(const Text& path, FolderPins& pins) {
  return placeIn(path, [&](const std::string& folder) { return pins.open(folder); });
}

}  // namespace halvorn
