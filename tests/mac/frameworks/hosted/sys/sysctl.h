// What the macOS adapters use of the kernel's tables, for a C library that has no such header.
#pragma once

#include <sys/time.h>
#include <sys/types.h>

#include <cstddef>

extern "C" {

enum { CTL_KERN = 1, KERN_PROC = 14, KERN_PROC_PID = 1 };
enum { P_TRACED = 0x00000800 };

struct extern_proc {
  union {
    struct timeval __p_starttime;
  } p_un;
  int p_flag;
};
#define p_starttime p_un.__p_starttime
struct kinfo_proc {
  struct extern_proc kp_proc;
};
int sysctl(int* name, unsigned nameLength, void* old, std::size_t* oldLength, void* fresh,
           std::size_t freshLength);

}  // extern "C"
