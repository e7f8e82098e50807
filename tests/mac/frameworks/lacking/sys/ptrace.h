// For a cross-compiler whose package lacks the header.
#pragma once

#include <sys/types.h>

#define PT_DENY_ATTACH 31

extern "C" int ptrace(int request, pid_t process, caddr_t address, int data);
