#include "Platform/session/linux/JournalLog.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace halvorn {
namespace {

constexpr char kPriorityInformational[] = "6";

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

// The message without contents, sent to the address.
msghdr messageTo(sockaddr_un& address) {
  msghdr message = {};
  message.msg_name = &address;
  message.msg_namelen = sizeof address;
  return message;
}

}  // namespace

JournalLog::JournalLog(const Clock& clock, const Text& programName, const Environment& environment,
                       const std::string& journalSocket)
    : StandardErrorLog(clock, programName),
      journalStream_(environment.value("JOURNAL_STREAM").value_or("")),
      socketPath_(journalSocket),
      socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

void JournalLog::write(const Text& line) const {
  const bool isSent = send(line);
  if (!isSent || !isStandardErrorJournal()) StandardErrorLog::write(line);
}

bool JournalLog::isStandardErrorJournal() const {
  struct stat information = {};
  if (journalStream_.empty() || ::fstat(STDERR_FILENO, &information) != 0) return false;
  return journalStream_ == std::to_string(information.st_dev) + ":" + std::to_string(information.st_ino);
}

bool JournalLog::send(const Text& line) const {
  // The values hold no line ends: the log escapes them.
  std::string entry = "MESSAGE=" + line.bytes() + "\nPRIORITY=" + kPriorityInformational +
                      "\nSYSLOG_IDENTIFIER=" + programName() + "\nSYSLOG_PID=" + std::to_string(::getpid()) +
                      "\n";
  sockaddr_un address = addressOf(socketPath_);
  iovec content = {entry.data(), entry.size()};
  msghdr message = messageTo(address);
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  if (retried([&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT); }) >= 0)
    return true;
  return (errno == EMSGSIZE || errno == ENOBUFS) && sendAsFile(entry);
}

// An entry too large for a datagram goes as the descriptor of a sealed file in memory.
bool JournalLog::sendAsFile(const std::string& entry) const {
  const FileDescriptor file(::memfd_create("journal-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (::write(file.get(), entry.data(), entry.size()) != static_cast<ssize_t>(entry.size())) return false;
  if (::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0)
    return false;
  sockaddr_un address = addressOf(socketPath_);
  msghdr message = messageTo(address);
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  cmsghdr* const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(int));
  const int descriptor = file.get();
  std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
  return retried([&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT); }) >= 0;
}

}  // namespace halvorn
