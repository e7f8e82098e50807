#include "Platform/files/posix/copy/ExtendedAttributes.h"

#include <cerrno>
#include <vector>

namespace halvorn {
namespace {

bool isNotSupported(int error) { return error == ENOTSUP || error == EOPNOTSUPP; }

// Whether a failure means that there is no place or no right for the attribute, rather than a fault.
bool isBeyondUs(std::string_view name, int error) {
  return isNotSupported(error) ||
         (error == EPERM && AttributeCalls::kindOf(name) != AttributeCalls::Kind::Persons);
}

// Makes room until the answer fits.
template <typename Call>
ssize_t callWithRoom(std::vector<char>& buffer, const Call& call) {
  ssize_t size = call(buffer.data(), buffer.size());
  while (size < 0 && errno == ERANGE) {
    const ssize_t needed = call(nullptr, 0);
    if (needed < 0) return needed;
    buffer.resize(static_cast<std::size_t>(needed) + 64);
    size = call(buffer.data(), buffer.size());
  }
  return size;
}

bool isRemoved(int result) {
  return result == 0 || AttributeCalls::isMissing(errno) || errno == EINVAL || isNotSupported(errno);
}

Cause causeUnlessRemoved(int result) {
  return isRemoved(result) ? Cause() : Cause::ofSystem(Cause::Operation::Metadata);
}

Cause causeOfReading() { return Cause::ofSystem(Cause::Operation::Metadata, Cause::Side::Original); }

}  // namespace

Cause AttributedFile::each(const std::function<bool(std::string_view)>& wanted,
                           const std::function<Cause(const std::string&, std::string_view)>& take) const {
  // Most files have none, and then this is all there is to do.
  char few[256];
  ssize_t size = AttributeCalls::list(item_, few, sizeof few);
  if (size == 0) return {};
  std::vector<char> many;
  if (size < 0 && errno == ERANGE) {
    size = callWithRoom(
        many, [&](char* buffer, std::size_t room) { return AttributeCalls::list(item_, buffer, room); });
  }
  if (size < 0) return isNotSupported(errno) ? Cause() : causeOfReading();
  const std::string_view names(many.empty() ? few : many.data(), static_cast<std::size_t>(size));
  std::vector<char> value(256);
  for (std::size_t start = 0; start < names.size();) {
    const std::string name(names.substr(start, names.find('\0', start) - start));
    start += name.size() + 1;
    if (!wanted(name)) continue;
    const ssize_t length = callWithRoom(value, [&](char* buffer, std::size_t room) {
      return AttributeCalls::get(item_, name, buffer, room);
    });
    if (length < 0) {
      // It may have gone meanwhile, and some can only be listed.
      if (AttributeCalls::isMissing(errno) || isBeyondUs(name, errno)) continue;
      return causeOfReading();
    }
    const std::string_view bytes(value.data(), static_cast<std::size_t>(length));
    if (const Cause cause = take(name, bytes)) return cause;
  }
  return {};
}

Cause AttributedFile::give(const std::string& name, std::string_view value) const {
  const bool isGiven = AttributeCalls::set(item_, name, value) == 0 || isBeyondUs(name, errno);
  return isGiven ? Cause() : Cause::ofSystem(Cause::Operation::Metadata);
}

Cause AttributedFile::removeAccessList() const {
  return causeUnlessRemoved(AttributeCalls::removeAccessList(item_));
}

Cause AttributedFile::removeListToHandDown() const {
  return causeUnlessRemoved(AttributeCalls::removeListToHandDown(item_));
}

}  // namespace halvorn
