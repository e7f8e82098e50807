// copy_item FROM TO: the installer's copy as a program of its own.
#include <cstdio>

#include "Platform/files/posix/PosixFileManager.h"

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::fputs("usage: copy_item from to\n", stderr);
    return 64;
  }
  return halvorn::PosixFileManager().copyItem(arguments[1], arguments[2]) ? 1 : 0;
}
