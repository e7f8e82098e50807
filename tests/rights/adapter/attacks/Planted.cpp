// A library that somebody planted where a careless program would load it from: leaves a sign with the rights
// it was loaded with.
#include <fcntl.h>
#include <unistd.h>

__attribute__((constructor)) static void leaveSign() {
  if (geteuid() != 0) return;
  const int sign = open("/opt/planted", O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  if (sign >= 0) close(sign);
}
