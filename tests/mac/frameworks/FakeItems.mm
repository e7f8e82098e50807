// Rules: a file reference is made for an item that is there, and resolving changes it in place; what is no alias is answered
// as it is, with wasAlias false (Alias Manager Reference, "FSResolveAliasFile"). Resources belong to their file and are gone
// with it; -1 is no file (Resource Manager Reference). A list of login items is copied item by item, and an item whose target
// is gone does not resolve (LSSharedFileList.h). Registering takes a URL, never none (LSInfo.h, "LSRegisterURL": not null).
#import <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>
#import <objc/runtime.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;

namespace {

constexpr ResFileRefNum kOurResourceFile = 9;
std::string openFork;

std::string pathOf(const FSRef* location) {
  std::uint32_t index = 0;
  std::memcpy(&index, location->hidden, sizeof(index));
  return index < state().referenced.size() ? state().referenced[index] : std::string();
}

bool isFolder(const std::string& path) {
  struct stat facts {};
  return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

LSItemInfoFlags flagsOf(const std::string& path) {
  const auto told = state().itemFlags.find(path);
  if (told != state().itemFlags.end()) return told->second;
  const bool isApplication = path.ends_with(".app") && isFolder(path + "/Contents/MacOS");
  return isApplication ? kLSItemInfoIsPackage | kLSItemInfoIsNativeApp : LSItemInfoFlags(0);
}

}  // namespace

namespace fakemac {

void refer(FSRef* location, const std::string& path) {
  const auto index = static_cast<std::uint32_t>(state().referenced.size());
  state().referenced.push_back(path);
  std::memset(location, 0, sizeof(FSRef));
  std::memcpy(location->hidden, &index, sizeof(index));
}

}  // namespace fakemac

extern "C" {

OSStatus FSPathMakeRef(const UInt8* path, FSRef* location, Boolean* folder) {
  const std::string bytes(reinterpret_cast<const char*>(path));
  if (::access(bytes.c_str(), F_OK) != 0) return -43;  // fnfErr
  fakemac::refer(location, bytes);
  if (folder != nullptr) *folder = isFolder(bytes) ? 1 : 0;
  return noErr;
}

OSStatus FSRefMakePath(const FSRef* location, UInt8* path, UInt32 capacity) {
  const std::string bytes = pathOf(location);
  if (bytes.empty()) return -35;               // nsvErr
  if (bytes.size() >= capacity) return -2110;  // pathTooLongErr
  std::memcpy(path, bytes.c_str(), bytes.size() + 1);
  return noErr;
}

OSErr FSResolveAliasFile(FSRef* location, Boolean followsChains, Boolean* folder, Boolean* wasAlias) {
  std::string path = pathOf(location);
  *wasAlias = 0;
  *folder = isFolder(path) ? 1 : 0;
  for (auto alias = state().aliases.find(path); alias != state().aliases.end();
       alias = state().aliases.find(path)) {
    path = alias->second;
    *wasAlias = 1;
    if (followsChains == 0) break;
  }
  if (*wasAlias == 0) return noErr;
  if (::access(path.c_str(), F_OK) != 0) return -43;
  fakemac::refer(location, path);
  *folder = isFolder(path) ? 1 : 0;
  return noErr;
}

ResFileRefNum CurResFile(void) { return state().currentResourceFile; }
void UseResFile(ResFileRefNum file) { state().currentResourceFile = file; }

ResFileRefNum FSOpenResFile(const FSRef* location, SInt8 permission) {
  if (permission != fsRdPerm || state().resourceForks.count(pathOf(location)) == 0) return -1;
  openFork = pathOf(location);
  fakemac::countGiven();
  state().currentResourceFile = kOurResourceFile;
  return kOurResourceFile;
}

void CloseResFile(ResFileRefNum file) {
  if (file != kOurResourceFile || openFork.empty()) fakemac::releasedTooOften("a resource file");
  openFork.clear();
  fakemac::countTaken();
  state().currentResourceFile = 0;
}

Handle Get1Resource(ResType type, ResID id) {
  if (state().currentResourceFile != kOurResourceFile) return nullptr;
  const auto& fork = state().resourceForks[openFork];
  const auto found = fork.find({type, id});
  if (found == fork.end()) return nullptr;
  char* const block = static_cast<char*>(std::malloc(sizeof(Size) + found->second.size()));
  const auto size = static_cast<Size>(found->second.size());
  std::memcpy(block, &size, sizeof(size));
  std::memcpy(block + sizeof(size), found->second.data(), found->second.size());
  fakemac::countGiven();
  return new char*(block + sizeof(size));
}

void ReleaseResource(Handle resource) {
  std::free(*resource - sizeof(Size));
  delete resource;
  fakemac::countTaken();
}

Size GetHandleSize(Handle handle) {
  Size size = 0;
  std::memcpy(&size, *handle - sizeof(size), sizeof(size));
  return size;
}

OSStatus LSCopyItemInfoForRef(const FSRef* item, LSRequestedInfo wanted, LSItemInfoRecord* information) {
  state().itemQuestions.push_back(wanted);
  const std::string path = pathOf(item);
  if (path.empty()) return -43;
  information->flags = flagsOf(path);
  return noErr;
}

OSStatus LSRegisterURL(CFURLRef url, Boolean updates) {
  if (url == nullptr) fakemac::endForMisuse("LSRegisterURL of no URL");
  if (updates == 0) return -50;
  state().registered.emplace_back([[(NSURL*)url absoluteString] UTF8String]);
  return state().registration;
}

const CFStringRef kLSSharedFileListSessionLoginItems =
    (CFStringRef) @"com.apple.LSSharedFileList.SessionLoginItems";

LSSharedFileListRef LSSharedFileListCreate(CFAllocatorRef, CFStringRef kind, CFTypeRef options) {
  if (kind != kLSSharedFileListSessionLoginItems || options != nullptr || !state().hasLoginItems)
    return nullptr;
  return (LSSharedFileListRef)fakemac::given([[NSObject alloc] init]);
}

CFArrayRef LSSharedFileListCopySnapshot(LSSharedFileListRef, UInt32* seed) {
  NSMutableArray* const items = [[NSMutableArray alloc] init];
  for (const auto& item : state().loginItems)
    [items addObject:[NSString stringWithUTF8String:item ? item->c_str() : ""]];
  *seed = 1;
  return (CFArrayRef)fakemac::given(items);
}

OSStatus LSSharedFileListItemResolve(LSSharedFileListItemRef item, UInt32 flags, CFURLRef* url, FSRef*) {
  NSString* const path = (NSString*)item;
  if (flags != 0 || [path length] == 0) return -43;
  *url = (CFURLRef)fakemac::given([[NSURL alloc] initFileURLWithPath:path]);
  return noErr;
}

}  // extern "C"

namespace {

BOOL openedFile(id, SEL, NSString* path) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no workspace"];
  if (state().refusesOpening || ::access([path fileSystemRepresentation], F_OK) != 0) return NO;
  state().opened.emplace_back([path UTF8String]);
  return YES;
}

BOOL openedUrl(id, SEL, NSURL* url) {
  state().opened.emplace_back([[url absoluteString] UTF8String]);
  return state().refusesOpening ? NO : YES;
}

IMP gnustepIcon = nullptr;

// In programs without windows there are no pictures: any object stands for one.
id iconForFile(id self, SEL selector, NSString* path) {
  if (state().hasRealPictures)
    return reinterpret_cast<id (*)(id, SEL, id)>(gnustepIcon)(self, selector, path);
  return state().hasIcons ? [NSString stringWithString:path] : nil;
}

// Extensions of programs are hidden, as people have it by default.
NSString* displayName(id, SEL, NSString* path) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no name"];
  NSString* const name = [path lastPathComponent];
  return [[name pathExtension] isEqual:@"app"] ? [name stringByDeletingPathExtension] : name;
}

}  // namespace

@interface KTFakeItems : NSObject
@end
@implementation KTFakeItems
+ (void)load {
  const Class workspace = objc_getClass("NSWorkspace");
  fakemac::answerInstead(workspace, @selector(openFile:), (IMP)openedFile, "c@:@");
  fakemac::answerInstead(workspace, @selector(openURL:), (IMP)openedUrl, "c@:@");
  gnustepIcon = fakemac::methodBefore(workspace, @selector(iconForFile:));
  fakemac::answerInstead(workspace, @selector(iconForFile:), (IMP)iconForFile, "@@:@");
  fakemac::answerInstead(objc_getClass("NSFileManager"), @selector(displayNameAtPath:), (IMP)displayName,
                         "@@:@");
}
@end
