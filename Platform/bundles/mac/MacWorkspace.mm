#include "Platform/bundles/mac/MacWorkspace.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

#include "Core/Paths.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {
namespace {

// What Launch Services say when a URL is none.
constexpr OSStatus kNoUrl = -50;

OptionalText pathOfItem(LSSharedFileListItemRef item) {
  Held<CFURLRef> url;
  if (LSSharedFileListItemResolve(item, 0, url.out(), nullptr) != noErr || !url) return std::nullopt;
  return textOf([(NSURL*)url.get() path]);
}

}  // namespace

bool MacWorkspace::openFile(const Text& path) {
  return answered(false,
                  [&] { return static_cast<bool>([[NSWorkspace sharedWorkspace] openFile:stringOf(path)]); });
}

bool MacWorkspace::openUrl(const Text& url) {
  return answered(false, [&] {
    NSURL* const page = [NSURL URLWithString:stringOf(url)];
    return page != nil && static_cast<bool>([[NSWorkspace sharedWorkspace] openURL:page]);
  });
}

int MacWorkspace::registerBundle(const Text& urlText) {
  return answered(kNoUrl, [&] {
    NSURL* const url = [NSURL URLWithString:stringOf(urlText)];
    return url != nil ? LSRegisterURL((CFURLRef)url, 1) : kNoUrl;
  });
}

bool MacWorkspace::hasIcon(const Text& path) {
  return answered(false, [&] { return [[NSWorkspace sharedWorkspace] iconForFile:stringOf(path)] != nil; });
}

Text MacWorkspace::displayName(const Text& path) const {
  const OptionalText name = answered(OptionalText(), [&] {
    return textOf([[NSFileManager defaultManager] displayNameAtPath:stringOf(path)]);
  });
  return name && !name->isEmpty() ? *name : Paths::lastComponent(path);
}

std::optional<std::vector<OptionalText>> MacWorkspace::loginItems() const {
  using Items = std::optional<std::vector<OptionalText>>;
  return answered(Items(), []() -> Items {
    const Held<LSSharedFileListRef> list(
        LSSharedFileListCreate(nullptr, kLSSharedFileListSessionLoginItems, nullptr));
    if (!list) return std::nullopt;
    UInt32 seed = 0;
    const Held<CFArrayRef> snapshot(LSSharedFileListCopySnapshot(list.get(), &seed));
    NSArray* const entries = (NSArray*)snapshot.get();
    std::vector<OptionalText> items;
    for (NSUInteger i = 0; i < [entries count]; ++i)
      items.push_back(pathOfItem((LSSharedFileListItemRef)[entries objectAtIndex:i]));
    return items;
  });
}

}  // namespace halvorn
