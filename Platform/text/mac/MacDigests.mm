#include "Platform/text/mac/MacDigests.h"

#include <CommonCrypto/CommonDigest.h>

#include <limits>

namespace halvorn {

std::optional<Md5Digest> MacDigests::md5(std::string_view bytes) const {
  if (bytes.size() > std::numeric_limits<CC_LONG>::max()) return std::nullopt;
  Md5Digest digest{};
  static_assert(std::tuple_size_v<Md5Digest> == CC_MD5_DIGEST_LENGTH);
  if (CC_MD5(bytes.data(), static_cast<CC_LONG>(bytes.size()), digest.data()) == nullptr) return std::nullopt;
  return digest;
}

}  // namespace halvorn
