// A tool for the administrator's rights that ends in the way it is told: kt_zoo_tool exit N | signal N | say
// TEXT (with '|' for line ends) | wait FILE (until the file exists) | identity. Tells that it has started as the real tool does.
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int count, char** words) {
  const std::string what = count > 1 ? words[1] : "exit";
  std::string value = count > 2 ? words[2] : "0";
  if (what != "exit-unannounced") ::shutdown(STDIN_FILENO, SHUT_WR);
  if (what == "signal") {
    ::signal(std::atoi(value.c_str()), SIG_DFL);
    ::raise(std::atoi(value.c_str()));
  }
  if (what == "say") std::replace(value.begin(), value.end(), '|', '\n');
  if (what == "say") std::fprintf(stderr, "tool: %s", value.c_str());
  if (what == "identity")
    std::fprintf(stderr, "tool: uid %d, for %s\n", ::getuid(), std::getenv("PKEXEC_UID"));
  while (what == "wait" && ::access(value.c_str(), F_OK) != 0) ::usleep(2000);
  return what.starts_with("exit") ? std::atoi(value.c_str()) : 0;
}
