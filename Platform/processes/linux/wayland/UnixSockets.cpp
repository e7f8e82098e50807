#include "Platform/processes/linux/wayland/UnixSockets.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <linux/unix_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cstring>
#include <optional>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

constexpr std::size_t kAnswerSize = 64UL * 1024;

template <typename Value>
Value valueIn(const rtattr* attribute) {
  Value value{};
  if (RTA_PAYLOAD(attribute) >= sizeof value) std::memcpy(&value, RTA_DATA(attribute), sizeof value);
  return value;
}

std::string pathIn(const rtattr* attribute) {
  const auto* const name = static_cast<const char*>(RTA_DATA(attribute));
  const std::size_t size = RTA_PAYLOAD(attribute);
  // Names that begin with a zero are no paths.
  return size > 0 && name[0] == '/' ? std::string(name, ::strnlen(name, size)) : "";
}

UnixSocket socketIn(const nlmsghdr* message) {
  const auto* const found = static_cast<const unix_diag_msg*>(NLMSG_DATA(message));
  UnixSocket result;
  result.number = found->udiag_ino;
  result.isListening = found->udiag_state == TCP_LISTEN;
  int left = static_cast<int>(message->nlmsg_len - NLMSG_LENGTH(sizeof *found));
  const auto* attribute = reinterpret_cast<const rtattr*>(found + 1);
  for (; RTA_OK(attribute, left); attribute = RTA_NEXT(attribute, left)) {
    if (attribute->rta_type == UNIX_DIAG_NAME) result.path = pathIn(attribute);
    if (attribute->rta_type == UNIX_DIAG_PEER) result.peer = valueIn<std::uint32_t>(attribute);
    if (attribute->rta_type == UNIX_DIAG_VFS) {
      const auto file = valueIn<unix_diag_vfs>(attribute);
      result.fileNumber = file.udiag_vfs_ino;
      result.fileDevice = file.udiag_vfs_dev;
    }
  }
  return result;
}

bool askForAll(int connection) {
  struct {
    nlmsghdr header{};
    unix_diag_req question{};
  } message;
  message.header.nlmsg_len = sizeof message;
  message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
  message.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  message.question.sdiag_family = AF_UNIX;
  message.question.udiag_states = (1U << TCP_ESTABLISHED) | (1U << TCP_LISTEN);
  message.question.udiag_show = UDIAG_SHOW_NAME | UDIAG_SHOW_PEER | UDIAG_SHOW_VFS;
  return retried([&] { return ::send(connection, &message, sizeof message, 0); }) ==
         static_cast<ssize_t>(sizeof message);
}

}  // namespace

std::vector<UnixSocket> unixSockets() {
  const FileDescriptor connection(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
  if (!connection || !askForAll(connection.get())) return {};
  std::vector<UnixSocket> result;
  alignas(nlmsghdr) char answer[kAnswerSize];
  for (;;) {
    // The kernel makes the answer as it is read, so nothing is waited for.
    const ssize_t count = retried([&] { return ::recv(connection.get(), answer, sizeof answer, 0); });
    if (count <= 0) return {};
    auto left = static_cast<unsigned int>(count);
    for (const auto* message = reinterpret_cast<const nlmsghdr*>(answer); NLMSG_OK(message, left);
         message = NLMSG_NEXT(message, left)) {
      if (message->nlmsg_type == NLMSG_DONE) return result;
      if (message->nlmsg_type == NLMSG_ERROR) return {};
      result.push_back(socketIn(message));
    }
  }
}

}  // namespace halvorn
