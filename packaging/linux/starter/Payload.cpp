#include "packaging/linux/starter/Payload.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zstd.h>

#include <vector>

#include "packaging/linux/starter/PayloadTrailer.h"

namespace halvorn {
namespace {

bool writeAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(file, bytes, count);
    if (written < 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

// Whether all of it went through and was a whole archive.
bool decompress(const Payload& payload, int into) {
  ZSTD_DStream* const stream = ZSTD_createDStream();
  std::vector<char> packed(ZSTD_DStreamInSize());
  std::vector<char> plain(ZSTD_DStreamOutSize());
  off_t place = payload.start;
  std::size_t left = 1;
  bool isWell = stream != nullptr;
  while (isWell && place < payload.start + payload.size) {
    const auto wanted =
        std::min<off_t>(static_cast<off_t>(packed.size()), payload.start + payload.size - place);
    const ssize_t count = ::pread(payload.file, packed.data(), static_cast<std::size_t>(wanted), place);
    if (count <= 0) break;
    place += count;
    ZSTD_inBuffer in{packed.data(), static_cast<std::size_t>(count), 0};
    while (isWell && in.pos < in.size) {
      ZSTD_outBuffer out{plain.data(), plain.size(), 0};
      left = ZSTD_decompressStream(stream, &out, &in);
      isWell = ZSTD_isError(left) == 0 && writeAll(into, plain.data(), out.pos);
    }
  }
  ZSTD_freeDStream(stream);
  return isWell && left == 0 && place == payload.start + payload.size;
}

// The tar of the system, reading from the descriptor. Modes are those of the archive, whatever the person's mask: what is
// installed has them from here. -1 where there is none.
pid_t startTar(int from, const std::string& folder) {
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, from, STDIN_FILENO);
  std::string words[] = {"tar", "-x", "-f", "-", "--no-same-owner", "-p", "-C", folder};
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t pid = -1;
  const int error = ::posix_spawnp(&pid, "tar", &actions, nullptr, pointers.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? pid : -1;
}

}  // namespace

std::optional<Payload> payloadOf(const std::string& program) {
  const int file = ::open(program.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (file < 0 || ::fstat(file, &status) != 0) return std::nullopt;
  const off_t end = status.st_size - static_cast<off_t>(kTrailerSize);
  std::string trailer(kTrailerSize, '\0');
  if (end <= 0 || ::pread(file, trailer.data(), kTrailerSize, end) != static_cast<ssize_t>(kTrailerSize))
    return std::nullopt;
  const PayloadSizes sizes = sizesInTrailer(trailer);
  const auto size = static_cast<off_t>(sizes.packed);
  if (size <= 0 || size > end) return std::nullopt;
  return Payload{
      .file = file, .start = end - size, .size = size, .unpackedSize = static_cast<off_t>(sizes.unpacked)};
}

bool unpack(const Payload& payload, const std::string& folder) {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  const pid_t tar = startTar(ends[0], folder);
  ::close(ends[0]);
  const bool isWhole = tar > 0 && decompress(payload, ends[1]);
  ::close(ends[1]);
  int status = -1;
  if (tar > 0) ::waitpid(tar, &status, 0);
  return isWhole && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace halvorn
