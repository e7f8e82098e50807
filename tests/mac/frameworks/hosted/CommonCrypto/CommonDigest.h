// The digest of the system, for a C library that has no such header.
#pragma once

#include <cstdint>

extern "C" {

typedef std::uint32_t CC_LONG;
enum { CC_MD5_DIGEST_LENGTH = 16 };
unsigned char* CC_MD5(const void* data, CC_LONG length, unsigned char* digest);

}  // extern "C"
