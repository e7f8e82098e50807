#include "Platform/bundles/mac/MacBundles.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <memory>
#include <string>

#include "Core/Paths.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestList = std::size_t{16} << 20;

NSBundle* bundleAt(const Text& path) { return [NSBundle bundleWithPath:stringOf(path)]; }

std::optional<std::string> realPathOf(const Text& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.bytes().c_str(), nullptr), ::free);
  return real != nullptr ? std::optional<std::string>(real.get()) : std::nullopt;
}

// The bundle class follows links and "..": what lies outside of the bundle is not the bundle's.
bool isInBundle(const Text& path, const Text& bundlePath) {
  const auto item = realPathOf(path);
  const auto bundle = realPathOf(bundlePath);
  return item && bundle && item->starts_with(*bundle + "/");
}

OptionalText onlyInBundle(const OptionalText& path, const Text& bundlePath) {
  return path && isInBundle(*path, bundlePath) ? path : std::nullopt;
}

// The name of a resource is no way out of the folder of resources.
bool isName(const Text& name) {
  for (const Text& component : Paths::components(name)) {
    if (component == Text("..")) return false;
  }
  return !name.isEmpty() && !Paths::isAbsolute(name);
}

// The class reads the whole file, whatever its size.
bool hasReadableInformation(const Text& bundlePath) {
  const Text file = Paths::appending(bundlePath, "Contents/Info.plist");
  struct stat facts {};
  if (::stat(file.bytes().c_str(), &facts) != 0) return true;  // it may lie elsewhere, or nowhere
  return S_ISREG(facts.st_mode) && static_cast<std::size_t>(facts.st_size) <= kLargestList &&
         isInBundle(file, bundlePath);
}

}  // namespace

Text MacBundles::mainBundlePath() const {
  return answered(OptionalText(), [] { return textOf([[NSBundle mainBundle] bundlePath]); }).value_or("/");
}

std::optional<PropertyDictionary> MacBundles::infoDictionary(const Text& bundlePath) const {
  if (!hasReadableInformation(bundlePath)) return std::nullopt;
  return answered(std::optional<PropertyDictionary>(), [&]() -> std::optional<PropertyDictionary> {
    NSDictionary* const information = [bundleAt(bundlePath) infoDictionary];
    if ([information count] == 0) return std::nullopt;
    return dictionaryOf(information);
  });
}

OptionalText MacBundles::pathForResource(const Text& bundlePath, const Text& name, const Text& type) const {
  if (!isName(name)) return std::nullopt;
  const OptionalText path = answered(OptionalText(), [&] {
    NSString* const wanted = type.isEmpty() ? nil : stringOf(type);
    return textOf([bundleAt(bundlePath) pathForResource:stringOf(name) ofType:wanted]);
  });
  return onlyInBundle(path, bundlePath);
}

std::vector<Text> MacBundles::resourcePaths(const Text& bundlePath) const {
  return answered(std::vector<Text>(), [&] {
    std::vector<Text> paths;
    NSString* const folder = [bundleAt(bundlePath) resourcePath];
    if (folder == nil) return paths;
    NSArray* const names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:folder error:NULL];
    for (NSUInteger i = 0; i < [names count]; ++i) {
      const Text path = *textOf([folder stringByAppendingPathComponent:[names objectAtIndex:i]]);
      if (isInBundle(path, bundlePath)) paths.push_back(path);
    }
    return paths;
  });
}

OptionalText MacBundles::executablePath(const Text& bundlePath) const {
  const OptionalText path =
      answered(OptionalText(), [&] { return textOf([bundleAt(bundlePath) executablePath]); });
  return onlyInBundle(path, bundlePath);
}

std::optional<PropertyDictionary> MacBundles::dictionaryAtPath(const Text& path) const {
  const auto bytes = readRegularFile(path.bytes(), kLargestList);
  if (!bytes) return std::nullopt;
  return answered(std::optional<PropertyDictionary>(), [&]() -> std::optional<PropertyDictionary> {
    const id list = [NSPropertyListSerialization propertyListWithData:dataOf(*bytes)
                                                              options:NSPropertyListImmutable
                                                               format:NULL
                                                                error:NULL];
    if (![list isKindOfClass:[NSDictionary class]]) return std::nullopt;
    return dictionaryOf(list);
  });
}

}  // namespace halvorn
