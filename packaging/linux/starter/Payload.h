// What is packed behind the program: a tar archive, compressed with zstd, and how long it is.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace halvorn {

struct Payload {
  int file = -1;
  off_t start = 0;
  off_t size = 0;
  off_t unpackedSize = 0;  // as told; what it takes on a disk may be somewhat more
};

// What the file's trailer says. nullopt where it has none.
[[nodiscard]] std::optional<Payload> payloadOf(const std::string& program);

// Unpacks into the existing folder, with the system's tar. Fails: false, and the folder may hold a part.
[[nodiscard]] bool unpack(const Payload& payload, const std::string& folder);

}  // namespace halvorn
