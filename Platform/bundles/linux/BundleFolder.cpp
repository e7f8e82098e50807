#include "Platform/bundles/linux/BundleFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "Core/Paths.h"

namespace halvorn {
namespace {

std::string lastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// Distributions keep the resources of a flat bundle in the folder for data that suits every processor, and
// put a link into the bundle. Such a folder counts as part of the bundle: it bears the bundle's name, and
// both the link and the folder are the administrator's, with nobody else allowed to write there.
bool isResourceFolderOfTheSystem(const std::string& link, const FoundItem& folder,
                                 const std::string& bundleName) {
  struct stat ofLink = {};
  struct stat ofFolder = {};
  if (::lstat(link.c_str(), &ofLink) != 0 || !S_ISLNK(ofLink.st_mode) || ofLink.st_uid != 0) return false;
  if (::fstat(folder.descriptor.get(), &ofFolder) != 0 || !S_ISDIR(ofFolder.st_mode)) return false;
  const bool isAdministrators = ofFolder.st_uid == 0 && (ofFolder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
  return isAdministrators && lastComponent(folder.realPath) == bundleName;
}

}  // namespace

std::optional<BundleFolder> BundleFolder::at(const Text& path) {
  auto item = findItem(path.bytes());
  if (!item || !isFolder(*item)) return std::nullopt;
  return BundleFolder(path, std::move(item->realPath));
}

BundleFolder::BundleFolder(const Text& path, std::string realPath) : path_(path) {
  realFolders_.push_back(std::move(realPath));
  const auto contents = find("Contents");
  layout_ = contents && isFolder(*contents) ? Layout::Contents : Layout::Flat;
  if (layout_ == Layout::Contents) return;
  const std::string link = pathOf(resources()).bytes();
  auto folder = findItem(link);
  if (folder && isResourceFolderOfTheSystem(link, *folder, lastComponent(realFolders_.front()))) {
    realFolders_.push_back(std::move(folder->realPath));
  }
}

Text BundleFolder::name() const {
  const Text file = Paths::lastComponent(path_);
  return Paths::extension(file) == Text("app") ? Paths::deletingExtension(file) : file;
}

Text BundleFolder::resources() const {
  return layout_ == Layout::Contents ? "Contents/Resources" : "Resources";
}

std::optional<FoundItem> BundleFolder::find(const Text& relativePath) const {
  if (!staysInside(relativePath)) return std::nullopt;
  auto item = findItem(pathOf(relativePath).bytes());
  if (!item) return std::nullopt;
  for (const std::string& folder : realFolders_) {
    if (isWithin(item->realPath, folder)) return item;
  }
  return std::nullopt;
}

std::optional<std::string> BundleFolder::read(const Text& relativePath, std::size_t limit) const {
  const auto item = find(relativePath);
  return item ? readItem(*item, limit) : std::nullopt;
}

Text BundleFolder::pathOf(const Text& relativePath) const { return Paths::appending(path_, relativePath); }

bool staysInside(const Text& relativePath) {
  if (relativePath.isEmpty() || Paths::isAbsolute(relativePath) || relativePath.find(u'\0') != Text::npos)
    return false;
  for (const Text& component : Paths::components(relativePath)) {
    if (component == Text("..")) return false;
  }
  return true;
}

OptionalText bundleAround(const Text& path) {
  for (Text folder = Paths::deletingLastComponent(path); folder.length() > 1;
       folder = Paths::deletingLastComponent(folder)) {
    if (Paths::extension(folder) != Text("app")) continue;
    const auto item = findItem(folder.bytes());
    if (item && isFolder(*item)) return folder;
  }
  return std::nullopt;
}

}  // namespace halvorn
