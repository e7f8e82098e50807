// hold_memory MEGABYTES: uses so much memory once, keeps one page of each megabyte, prints "held" and ends
// with its input. What is let go of stays with this machine: a virtual one hands memory back to its host in
// pieces of two megabytes, and every program that comes next would be measured at asking for it again.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::fputs("usage: hold_memory megabytes\n", stderr);
    return 64;
  }
  constexpr std::size_t pageSize = 4096;
  constexpr std::size_t megabyte = 1 << 20;
  const std::size_t size = std::strtoul(arguments[1], nullptr, 10) * megabyte;
  void* const all =
      ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (all == MAP_FAILED) return 1;
  ::madvise(all, size, MADV_NOHUGEPAGE);
  auto* const bytes = static_cast<volatile char*>(all);
  for (std::size_t at = 0; at < size; at += pageSize) bytes[at] = 1;
  for (std::size_t at = 0; at < size; at += megabyte)
    ::madvise(static_cast<char*>(all) + at + pageSize, megabyte - pageSize, MADV_DONTNEED);
  std::puts("held");
  std::fflush(stdout);
  char unused = 0;
  while (::read(STDIN_FILENO, &unused, 1) > 0) {
  }
  return 0;
}
