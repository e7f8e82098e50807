#include "Platform/processes/linux/proc/Signatures.h"

#include <cstdint>

namespace halvorn {
namespace {

constexpr FourCharCode kControlCharacters = 0x1F;  // 0x01 to 0x1F; 0 stays out

}  // namespace

FourCharCode signatureFrom(const PropertyDictionary& information, const Text& identity) {
  const OptionalText declared = textForKey(information, "CFBundleSignature");
  const FourCharCode code = declared ? fourCharCodeFromText(*declared) : 0;
  return code != 0 && code != kUndeclaredSignature ? code : derivedSignature(identity);
}

FourCharCode derivedSignature(const Text& identity) {
  std::uint64_t hash = 0xcbf29ce484222325u;  // FNV-1a
  for (const char byte : identity.bytes()) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3u;
  }
  const auto first = static_cast<FourCharCode>(hash >> 32) % kControlCharacters + 1;
  return first << 24 | static_cast<FourCharCode>(hash & 0xFFFFFF);
}

}  // namespace halvorn
