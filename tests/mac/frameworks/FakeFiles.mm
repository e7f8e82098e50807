// Rules: a folder that is copied to a folder which is there is copied into it; without COPYFILE_EXCL what is there is
// overwritten; of the item that could not be copied the call-back is told with the stage COPYFILE_ERR, and COPYFILE_QUIT ends
// the copy there (copyfile(3)). A recycle operation answers one truth for all its files (NSWorkspace).
#import <AppKit/AppKit.h>
#include <copyfile.h>
#include <dlfcn.h>
#include <fcntl.h>
#import <objc/runtime.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

using fakemac::state;
namespace fs = std::filesystem;

struct copyfile_state {
  int (*callback)(int, int, copyfile_state_t, const char*, const char*, void*) = nullptr;
  void* context = nullptr;
};

namespace {

bool isCopied(const fs::path& from, const fs::path& to, copyfile_state_t state, copyfile_flags_t flags);

bool isRefused(int what, const fs::path& from, const fs::path& to, copyfile_state_t state) {
  const int error = errno;
  if (state != nullptr && state->callback != nullptr)
    static_cast<void>(state->callback(what, COPYFILE_ERR, state, from.c_str(), to.c_str(), state->context));
  errno = error;
  return false;
}

bool isFileCopied(const fs::path& from, const fs::path& to, copyfile_state_t state, copyfile_flags_t flags) {
  struct stat facts {};
  std::error_code error;
  const bool mayReplace = (flags & COPYFILE_EXCL) == 0;
  fs::copy_file(from, to, mayReplace ? fs::copy_options::overwrite_existing : fs::copy_options::none, error);
  errno = error.value();
  if (error) return isRefused(COPYFILE_RECURSE_FILE, from, to, state);
  if (::stat(from.c_str(), &facts) == 0 && (flags & COPYFILE_STAT) != 0) {
    const timespec times[] = {facts.st_atim, facts.st_mtim};
    static_cast<void>(::chmod(to.c_str(), facts.st_mode & 07777));
    static_cast<void>(::utimensat(AT_FDCWD, to.c_str(), times, 0));
  }
  return true;
}

bool isFolderCopied(const fs::path& from, const fs::path& to, copyfile_state_t state,
                    copyfile_flags_t flags) {
  std::error_code error;
  struct stat facts {};
  if (::stat(from.c_str(), &facts) != 0 || ::mkdir(to.c_str(), 0700) != 0)
    return isRefused(COPYFILE_RECURSE_DIR, from, to, state);
  for (const fs::directory_entry& entry : fs::directory_iterator(from, error)) {
    if (!isCopied(entry.path(), to / entry.path().filename(), state, flags)) return false;
  }
  if (error) {
    errno = error.value();
    return isRefused(COPYFILE_RECURSE_DIR, from, to, state);
  }
  if ((flags & COPYFILE_STAT) != 0) static_cast<void>(::chmod(to.c_str(), facts.st_mode & 07777));
  return true;
}

bool isCopied(const fs::path& from, const fs::path& to, copyfile_state_t state, copyfile_flags_t flags) {
  struct stat facts {};
  const bool followsLinks = (flags & (COPYFILE_NOFOLLOW_SRC | COPYFILE_CLONE)) == 0;
  if ((followsLinks ? ::stat(from.c_str(), &facts) : ::lstat(from.c_str(), &facts)) != 0)
    return isRefused(COPYFILE_RECURSE_FILE, from, to, state);
  if (S_ISDIR(facts.st_mode)) return isFolderCopied(from, to, state, flags);
  if (!S_ISLNK(facts.st_mode)) return isFileCopied(from, to, state, flags);
  std::error_code error;
  fs::copy_symlink(from, to, error);
  errno = error.value();
  return !error || isRefused(COPYFILE_RECURSE_FILE, from, to, state);
}

}  // namespace

extern "C" {

copyfile_state_t copyfile_state_alloc(void) {
  fakemac::countGiven();
  return new copyfile_state;
}

int copyfile_state_free(copyfile_state_t state) {
  if (state != nullptr) fakemac::countTaken();
  delete state;
  return 0;
}

int copyfile_state_set(copyfile_state_t state, std::uint32_t flag, const void* value) {
  if (flag == COPYFILE_STATE_STATUS_CB) {
    state->callback = reinterpret_cast<decltype(state->callback)>(const_cast<void*>(value));
  } else if (flag == COPYFILE_STATE_STATUS_CTX) {
    state->context = const_cast<void*>(value);
  } else {
    errno = EINVAL;
    return -1;
  }
  return 0;
}

int copyfile(const char* from, const char* to, copyfile_state_t state, copyfile_flags_t flags) {
  fakemac::state().copyFlags.push_back(flags);
  // Another process makes the item; nothing tells a program that is meant for two systems when.
  while (!fakemac::state().copyGate.empty() && !fs::exists(fakemac::state().copyGate)) ::usleep(5000);
  struct stat source {};
  struct stat target {};
  fs::path place = to;
  const bool isFolder = ::lstat(from, &source) == 0 && S_ISDIR(source.st_mode);
  if (isFolder && (flags & COPYFILE_RECURSIVE) == 0) {
    errno = EISDIR;
    return -1;
  }
  if (isFolder && ::stat(to, &target) == 0 && S_ISDIR(target.st_mode)) place /= fs::path(from).filename();
  return isCopied(from, place, state, flags) ? 0 : -1;
}

}  // extern "C"

namespace {

NSString* homeOfTheTest() {
  return state().homeFolder.empty() ? nil : [NSString stringWithUTF8String:state().homeFolder.c_str()];
}

BOOL moved(id, SEL, NSString* operation, NSString* source, NSString* destination, NSArray* names, int* tag) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no workspace"];
  if (![operation isEqual:NSWorkspaceRecycleOperation] || [destination length] != 0 || tag != nullptr)
    return NO;
  ++state().recycleOperations;
  if (state().refusesRecycling) return NO;
  std::error_code error;
  fs::create_directories(state().trashFolder, error);
  for (NSUInteger i = 0; i < [names count] && !error; ++i) {
    const std::string name = [[names objectAtIndex:i] fileSystemRepresentation];
    fs::rename(fs::path([source fileSystemRepresentation]) / name, fs::path(state().trashFolder) / name,
               error);
  }
  return error ? NO : YES;
}

void noted(id, SEL, NSString* path) {
  if (state().raisesExceptions) [NSException raise:NSGenericException format:@"no workspace"];
  state().changesNoted.emplace_back([path UTF8String]);
}

}  // namespace

extern "C" {

// The system's folders and not those of GNUstep; in the home of the test where it has one.
NSString* NSHomeDirectory(void) {
  if (NSString* const home = homeOfTheTest()) return home;
  static const auto real = reinterpret_cast<NSString* (*)()>(::dlsym(RTLD_NEXT, "NSHomeDirectory"));
  return real();
}

NSArray* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory, NSSearchPathDomainMask domains,
                                             BOOL expands) {
  static const auto real =
      reinterpret_cast<NSArray* (*)(NSSearchPathDirectory, NSSearchPathDomainMask, BOOL)>(
          ::dlsym(RTLD_NEXT, "NSSearchPathForDirectoriesInDomains"));
  if (directory != NSApplicationDirectory) return real(directory, domains, expands);
  NSMutableArray* const paths = [NSMutableArray array];
  if ((domains & NSUserDomainMask) != 0)
    [paths addObject:expands ? [NSHomeDirectory() stringByAppendingPathComponent:@"Applications"]
                             : @"~/Applications"];
  if ((domains & NSLocalDomainMask) != 0) [paths addObject:@"/Applications"];
  return paths;
}

}  // extern "C"

@interface KTFakeWorkspaceFiles : NSObject
@end
@implementation KTFakeWorkspaceFiles
+ (void)load {
  const Class workspace = objc_getClass("NSWorkspace");
  fakemac::answerInstead(workspace, @selector(performFileOperation:source:destination:files:tag:), (IMP)moved,
                         "c@:@@@@^i");
  fakemac::answerInstead(workspace, @selector(noteFileSystemChanged:), (IMP)noted, "v@:@");
}
@end
