// What the macOS adapters use of mounted file systems, for a C library whose record has no names in it.
#pragma once

#include <cstdint>

extern "C" {

struct statfs {
  std::uint32_t f_bsize;
  char f_fstypename[16];
};
int statfs(const char* path, struct statfs* record) __asm__("kt_made_up_statfs");

}  // extern "C"
