#include "Platform/session/linux/SessionServers.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/session/linux/bus/BusConnection.h"
#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class Deadline {
 public:
  explicit Deadline(milliseconds patience) : end_(steady_clock::now() + patience) {}
  [[nodiscard]] int millisecondsLeft() const {
    const auto left = std::chrono::ceil<milliseconds>(end_ - steady_clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
  }
  [[nodiscard]] double secondsLeft() const { return millisecondsLeft() / 1000.0; }

 private:
  steady_clock::time_point end_;
};

// A socket by its path, or by its name where names need no file.
struct SocketName {
  std::string name;
  bool isAbstract = false;
};

// Connected without waiting; none when that cannot be had at once. `isFull` tells that somebody listens and takes nobody.
FileDescriptor connected(const SocketName& socket, bool& isFull) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t place = socket.isAbstract ? 1 : 0;
  if (socket.name.empty() || socket.name.size() + 1 + place > sizeof address.sun_path)
    return FileDescriptor();
  socket.name.copy(address.sun_path + place, sizeof address.sun_path - 1 - place);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + place + socket.name.size() +
                                             (socket.isAbstract ? 0 : 1));
  FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0) return client;
  isFull = isFull || errno == EAGAIN;
  return FileDescriptor();
}

// Says the words and waits for a first byte.
Answer firstWord(const SocketName& socket, std::string_view words, const Deadline& deadline) {
  bool isFull = false;
  const FileDescriptor server = connected(socket, isFull);
  if (!server) return isFull ? Answer::Silent : Answer::Missing;
  if (::send(server.get(), words.data(), words.size(), MSG_NOSIGNAL) < 0) return Answer::Missing;
  pollfd entry{server.get(), POLLIN, 0};
  if (retried([&] { return ::poll(&entry, 1, deadline.millisecondsLeft()); }) <= 0) return Answer::Silent;
  char byte = 0;
  return ::recv(server.get(), &byte, 1, 0) > 0 ? Answer::Given : Answer::Missing;
}

// Of "unix:path=/run/bus,guid=0"; nullopt for an address of another kind.
std::optional<SocketName> socketOf(const std::string& busAddress) {
  const std::string first = busAddress.substr(0, busAddress.find(';'));
  for (const auto& [key, isAbstract] : {std::pair("path=", false), std::pair("abstract=", true)}) {
    const std::string begin = std::string("unix:") + key;
    if (!first.starts_with(begin)) continue;
    const std::string name = first.substr(begin.size(), first.find(',') - begin.size());
    // What is written in percents is left to the library.
    return name.find('%') == std::string::npos ? std::optional(SocketName{name, isAbstract}) : std::nullopt;
  }
  return std::nullopt;
}

// A bus that greets; null with the reason.
std::unique_ptr<BusConnection> greeted(const std::string& address, const Deadline& deadline, Answer& answer) {
  answer = Answer::Given;
  if (const auto socket = socketOf(address)) {
    const std::string user = std::to_string(::getuid());
    std::string words(1, '\0');
    words += "AUTH EXTERNAL ";
    for (const char digit : user) words.append({'3', digit});  // the code of a digit
    answer = firstWord(*socket, words + "\r\n", deadline);
  }
  if (answer != Answer::Given) return nullptr;
  auto bus = BusConnection::open(address, deadline.secondsLeft());
  if (!bus) answer = deadline.millisecondsLeft() == 0 ? Answer::Silent : Answer::Missing;
  return bus;
}

struct DisplayPlace {
  std::string host;
  int number = 0;
};

std::optional<DisplayPlace> placeOf(const std::string& displayName) {
  char* host = nullptr;
  DisplayPlace place;
  int screen = 0;
  if (xcb_parse_display(displayName.c_str(), &host, &place.number, &screen) == 0) return std::nullopt;
  place.host = host;
  std::free(host);
  return place;
}

}  // namespace

Answer askDisplay(const std::optional<std::string>& displayName, milliseconds patience) {
  const auto place = displayName ? placeOf(*displayName) : std::nullopt;
  if (!place) return Answer::Missing;
  if (!place->host.empty() && place->host != "unix") return Answer::Given;
  const Deadline deadline(patience);
  // The order of bytes, the protocol's version, and no name to be let in by: the answer may be a refusal.
  constexpr std::string_view kGreeting("l\0\13\0\0\0\0\0\0\0\0\0", 12);
  const std::string path = "/tmp/.X11-unix/X" + std::to_string(place->number);
  Answer answer = firstWord({path, true}, kGreeting, deadline);
  if (answer == Answer::Missing) answer = firstWord({path, false}, kGreeting, deadline);
  if (answer != Answer::Given) return answer;
  return DisplayConnection::open(displayName) != nullptr ? Answer::Given : Answer::Missing;
}

BusAnswers askBuses(const std::optional<std::string>& sessionAddress,
                    const std::optional<std::string>& accessibilityAddress, milliseconds patience) {
  const Deadline deadline(patience);
  BusAnswers answers;
  std::optional<std::string> address = accessibilityAddress;
  if (sessionAddress) {
    const auto bus = greeted(*sessionAddress, deadline, answers.session);
    if (bus && !address && bus->ownerOf("org.a11y.Bus")) {
      const CallResult told =
          bus->call(methodCall({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"}),
                    deadline.secondsLeft());
      const auto* reply = std::get_if<BusMessage>(&told);
      address = reply != nullptr ? firstText(*reply) : std::nullopt;
      if (const auto* failure = std::get_if<CallFailure>(&told);
          failure != nullptr && *failure == CallFailure::TimedOut)
        answers.accessibility = Answer::Silent;
    }
  }
  if (address && !address->empty()) static_cast<void>(greeted(*address, deadline, answers.accessibility));
  return answers;
}

}  // namespace halvorn
