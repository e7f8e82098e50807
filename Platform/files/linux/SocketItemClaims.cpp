#include "Platform/files/linux/SocketItemClaims.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace halvorn {
namespace {

constexpr int kAttempts = 20;
constexpr int kBetweenAttempts = 10;       // milliseconds
constexpr int kPatience = 5000;            // for the answer of who has the claim; it may be starting
constexpr int kPatienceForTheToken = 500;  // of a program that sends it at once
constexpr std::size_t kLongestToken = 512;
constexpr char kHeard = '!';

// Of the nearest folder on the way that is there.
dev_t fileSystemOf(std::filesystem::path place) {
  struct stat status {};
  while (::stat(place.c_str(), &status) != 0 && place.has_relative_path()) place = place.parent_path();
  return status.st_dev;
}

// The way that all paths to the item have in common, and its file system: where somebody has mounts of his own, the same
// way leads to another place.
std::string resolved(const Text& path) {
  std::error_code error;
  const auto place = std::filesystem::weakly_canonical(std::filesystem::path(path.bytes()), error);
  return std::to_string(fileSystemOf(place)) + ":" + (error ? path.bytes() : place.string());
}

// The same in every version of the program: two of them may meet.
std::uint64_t digestOf(const std::string& bytes) {
  std::uint64_t digest = 14695981039346656037U;
  for (const char byte : bytes) digest = (digest ^ static_cast<unsigned char>(byte)) * 1099511628211U;
  return digest;
}

struct Address {
  sockaddr_un name{};
  socklen_t length = 0;
};

// A name without a file: it is gone with the program.
Address addressFor(const Text& path) {
  std::array<char, 80> text{};
  const int length = std::snprintf(text.data(), text.size(), "halvorn-installer/%u/%016llx",
                                   static_cast<unsigned>(::geteuid()),
                                   static_cast<unsigned long long>(digestOf(resolved(path))));
  Address address;
  address.name.sun_family = AF_UNIX;
  std::memcpy(address.name.sun_path + 1, text.data(), static_cast<std::size_t>(length));
  address.length =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + static_cast<std::size_t>(length));
  return address;
}

FileDescriptor newSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool becomesReadable(int socket, int milliseconds) {
  pollfd waiting{.fd = socket, .events = POLLIN, .revents = 0};
  return retried([&] { return ::poll(&waiting, 1, milliseconds); }) == 1;
}

// A name can be taken by anybody; another person's program is told nothing, and nothing is believed of it.
bool isOfThisPerson(int socket) {
  ucred peer{};
  socklen_t length = sizeof(peer);
  return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::geteuid();
}

// nullopt when nobody is there any more.
std::optional<ItemClaims::Claim> tell(const Address& address, const std::string& token) {
  const FileDescriptor socket = newSocket();
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address.name), address.length) != 0)
    return std::nullopt;
  if (!isOfThisPerson(socket.get())) return ItemClaims::Claim::Unknown;
  const std::string message = token.size() > kLongestToken ? " " : token + " ";  // never empty
  if (::send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL) < 0) return std::nullopt;
  char answer = 0;
  if (!becomesReadable(socket.get(), kPatience)) return ItemClaims::Claim::Unknown;
  const bool isHeard = ::recv(socket.get(), &answer, 1, 0) == 1 && answer == kHeard;
  return isHeard ? std::optional(ItemClaims::Claim::Anothers) : std::nullopt;
}

}  // namespace

SocketItemClaims::SocketItemClaims(RunLoop& loop, Activation activation)
    : loop_(loop), activation_(std::move(activation)) {}

ItemClaims::Claim SocketItemClaims::claim(const Text& path, std::function<void()> wanted) {
  const Address address = addressFor(path);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    FileDescriptor socket = newSocket();
    if (!socket) return Claim::Unknown;
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address.name), address.length) == 0 &&
        ::listen(socket.get(), SOMAXCONN) == 0) {
      keep(std::move(socket), std::move(wanted));
      return Claim::Ours;
    }
    if (const auto answer = tell(address, activation_.token)) return *answer;
    // Between its name and its ear, or just gone.
    ::poll(nullptr, 0, kBetweenAttempts);
  }
  return Claim::Unknown;
}

void SocketItemClaims::keep(FileDescriptor socket, std::function<void()> wanted) {
  Claimed& claimed = claimed_.emplace_back();
  claimed.socket = std::move(socket);
  claimed.calls = loop_.whenReadable(
      claimed.socket.get(),
      [this, listening = claimed.socket.get(), wanted = std::move(wanted)] { hear(listening, wanted); });
}

void SocketItemClaims::hear(int socket, const std::function<void()>& wanted) {
  const FileDescriptor caller(::accept4(socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!caller || !isOfThisPerson(caller.get()) || !becomesReadable(caller.get(), kPatienceForTheToken))
    return;
  std::array<char, kLongestToken + 1> message{};
  const ssize_t length = ::recv(caller.get(), message.data(), message.size(), 0);
  if (length <= 0) return;
  if (::send(caller.get(), &kHeard, 1, MSG_NOSIGNAL) != 1) return;
  std::string token(message.data(), static_cast<std::size_t>(length));
  token.resize(token.find_last_not_of(' ') + 1);
  if (!token.empty() && activation_.takeOver) activation_.takeOver(token);
  wanted();
}

}  // namespace halvorn
