#include "Platform/files/mac/MacFileManager.h"

#include <copyfile.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <memory>
#include <string>

namespace halvorn {
namespace {

// What the engine told of the item it could not copy; it is asked to stop there.
struct FirstFailure {
  static int told(int, int stage, copyfile_state_t, const char* source, const char* target, void* context) {
    if (stage != COPYFILE_ERR) return COPYFILE_CONTINUE;
    auto& failure = *static_cast<FirstFailure*>(context);
    failure.error = errno;
    if (source != nullptr) failure.source = source;
    if (target != nullptr) failure.target = target;
    return COPYFILE_QUIT;
  }

  int error = 0;
  std::string source;
  std::string target;
};

// The engine does not tell on which side it failed: an original that cannot be read is asked for.
FileFailure failureOf(const FirstFailure& failure) {
  struct stat facts {};
  const bool isLink = ::lstat(failure.source.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode);
  if (!isLink && ::faccessat(AT_FDCWD, failure.source.c_str(), R_OK, AT_EACCESS) != 0)
    return Cause::ofSystem(Cause::Operation::Open).at(failure.source);
  return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, failure.error).at(failure.target);
}

std::optional<FileFailure> copyByTheSystem(const std::string& from, const std::string& to) {
  const std::unique_ptr<std::remove_pointer_t<copyfile_state_t>, int (*)(copyfile_state_t)> state(
      ::copyfile_state_alloc(), ::copyfile_state_free);
  FirstFailure failure{.source = from, .target = to};
  const bool isReady = state != nullptr &&
                       ::copyfile_state_set(state.get(), COPYFILE_STATE_STATUS_CB,
                                            reinterpret_cast<const void*>(FirstFailure::told)) == 0 &&
                       ::copyfile_state_set(state.get(), COPYFILE_STATE_STATUS_CTX, &failure) == 0;
  if (!isReady) return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, ENOMEM).at(to);
  constexpr copyfile_flags_t flags = COPYFILE_ALL | COPYFILE_RECURSIVE | COPYFILE_CLONE | COPYFILE_EXCL |
                                     COPYFILE_NOFOLLOW_SRC | COPYFILE_NOFOLLOW_DST;
  if (::copyfile(from.c_str(), to.c_str(), state.get(), flags) == 0 && failure.error == 0)
    return std::nullopt;
  if (failure.error == 0) failure.error = errno;
  return failureOf(failure);
}

// Nothing at all, a link to nowhere included: into a folder that is there the engine would copy.
Cause causeUnlessFree(const ItemPlace& place) {
  struct stat facts {};
  if (::fstatat(place.folder.get(), place.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0)
    return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, EEXIST);
  return errno == ENOENT ? Cause() : Cause::ofSystem(Cause::Operation::Make);
}

Cause causeUnlessThere(const ItemPlace& place) {
  struct stat facts {};
  return ::fstatat(place.folder.get(), place.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0
             ? Cause()
             : Cause::ofSystem(Cause::Operation::Look, Cause::Side::Original);
}

}  // namespace

std::optional<FileFailure> MacFileManager::copyItem(const Text& from, const Text& to) try {
  const auto places = placesOfCopy(from, to);
  if (!places) return places.cause();
  if (const Cause cause = causeUnlessThere(places->source)) return cause.at(from.bytes());
  if (const Cause cause = causeUnlessFree(places->target)) return cause.at(to.bytes());
  return copyByTheSystem(from.bytes(), to.bytes());
} catch (const std::exception&) {
  return Cause::ofSystem(Cause::Operation::Make, Cause::Side::Copy, ENOMEM).at(to.bytes());
}

}  // namespace halvorn
