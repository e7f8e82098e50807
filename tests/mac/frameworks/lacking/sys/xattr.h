// What the macOS adapters use of extended attributes, for a cross-compiler whose package lacks the header.
#pragma once

#include <sys/types.h>

#define XATTR_NOFOLLOW 0x0001

extern "C" {

ssize_t listxattr(const char* path, char* names, size_t room, int options);
ssize_t flistxattr(int file, char* names, size_t room, int options);
ssize_t getxattr(const char* path, const char* name, void* value, size_t room, u_int32_t position,
                 int options);
ssize_t fgetxattr(int file, const char* name, void* value, size_t room, u_int32_t position, int options);
int fsetxattr(int file, const char* name, const void* value, size_t size, u_int32_t position, int options);

}  // extern "C"
