#include "Platform/text/linux/CryptoDigests.h"

#include <openssl/evp.h>
#include <openssl/provider.h>

#include <memory>

namespace halvorn {
namespace {

struct Closer {
  void operator()(OSSL_LIB_CTX* library) const { OSSL_LIB_CTX_free(library); }
  void operator()(OSSL_PROVIDER* provider) const { OSSL_PROVIDER_unload(provider); }
  void operator()(EVP_MD* digest) const { EVP_MD_free(digest); }
};

}  // namespace

// In a library context of its own: the machine may allow its programs approved digests only, and this one
// protects nothing, it names things.
std::optional<Md5Digest> CryptoDigests::md5(std::string_view bytes) const {
  const std::unique_ptr<OSSL_LIB_CTX, Closer> library(OSSL_LIB_CTX_new());
  if (!library) return std::nullopt;
  const std::unique_ptr<OSSL_PROVIDER, Closer> provider(OSSL_PROVIDER_load(library.get(), "default"));
  const std::unique_ptr<EVP_MD, Closer> digest(EVP_MD_fetch(library.get(), "MD5", nullptr));
  Md5Digest result{};
  unsigned int length = 0;
  const bool isDone =
      provider && digest &&
      EVP_Digest(bytes.data(), bytes.size(), result.data(), &length, digest.get(), nullptr) == 1;
  return isDone && length == result.size() ? std::optional(result) : std::nullopt;
}

}  // namespace halvorn
