#include "Platform/text/linux/DigestModule.h"

#include "Platform/text/linux/CryptoDigests.h"

extern "C" [[gnu::visibility("default")]] halvorn::Digests* halvornMakeDigests() {
  return new halvorn::CryptoDigests;
}
