#include "Platform/running/posix/PosixStandardStreams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "Core/Paths.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

void makeFolders(const Text& folder) {
  if (folder.length() < 2 || ::mkdir(folder.bytes().c_str(), 0700) == 0 || errno != ENOENT) return;
  makeFolders(Paths::deletingLastComponent(folder));
  ::mkdir(folder.bytes().c_str(), 0700);
}

// O_NONBLOCK and O_NOCTTY are for terminals: not to wait for a carrier, not to become the terminal's session.
FileDescriptor openForAppending(const Text& path) {
  if (path.find(u'\0') != Text::npos) return FileDescriptor();
  FileDescriptor file(
      ::open(path.bytes().c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
  if (file.get() >= 0) ::fcntl(file.get(), F_SETFL, O_APPEND);
  return file;
}

// Gives the descriptor's number to the file, which may have that very number when it was closed before.
bool takeOver(FileDescriptor file, int descriptor) {
  const FileDescriptor raised(::fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  file = FileDescriptor();
  int result = -1;
  do {
    result = ::dup2(raised.get(), descriptor);
  } while (result < 0 && errno == EINTR);
  return result == descriptor;
}

}  // namespace

PosixStandardStreams::PosixStandardStreams(const Text& logsFolder) : logsFolder_(logsFolder) {}

bool PosixStandardStreams::reopen(Stream stream, const Text& path) {
  std::FILE* const file = stream == Stream::Output ? stdout : stderr;
  const int descriptor = stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
  std::fflush(file);
  if (!logsFolder_.isEmpty() && path.hasPrefix(logsFolder_ + Text("/"))) makeFolders(logsFolder_);
  const bool isReopened = takeOver(openForAppending(path), descriptor);
  // A folder opened for reading refuses every write, as a closed stream does.
  if (!isReopened) takeOver(FileDescriptor(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), descriptor);
  std::clearerr(file);
  return isReopened;
}

}  // namespace halvorn
