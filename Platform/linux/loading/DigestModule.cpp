#include "Platform/linux/loading/DigestModule.h"

#include "Platform/linux/text/CryptoDigests.h"

extern "C" [[gnu::visibility("default")]] halvorn::Digests* halvornMakeDigests() {
  return new halvorn::CryptoDigests;
}
