// A session manager of a test's own, by the X session management protocol. Prints "SESSION_MANAGER=address" for the
// environment of programs, then "registered" for each program that comes, "saved" for each that is through with what it
// does before the session ends, and "left" for each that has gone. SIGUSR1 ends the session: each program is asked to save
// what it has, and once all have, told to end.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

// Of the library's own transport, which has no header: nobody but this machine is listened to.
extern "C" int _IceTransNoListen(const char* protocol);  // NOLINT(bugprone-reserved-identifier)

namespace {

struct Client {
  SmsConn connection;
  bool isSaved;
};
std::vector<Client> clients;
bool isEnding = false;

void say(const char* word) {
  std::puts(word);
  std::fflush(stdout);
}

Client* clientOf(SmsConn connection) {
  const auto found = std::find_if(clients.begin(), clients.end(),
                                  [&](const Client& each) { return each.connection == connection; });
  return found == clients.end() ? nullptr : &*found;
}

void save(SmsConn connection, bool isShutdown) {
  SmsSaveYourself(connection, SmSaveLocal, isShutdown ? True : False,
                  isShutdown ? SmInteractStyleAny : SmInteractStyleNone, False);
}

Status registerClient(SmsConn connection, SmPointer, char*) {
  // Freed by the library.
  char* const name = SmsGenerateClientID(connection);
  SmsRegisterClientReply(connection, name);
  say("registered");
  save(connection, false);
  return 1;
}

void saved(SmsConn connection, SmPointer, Bool) {
  if (!isEnding) return SmsSaveComplete(connection);
  if (Client* const client = clientOf(connection)) client->isSaved = true;
  say("saved");
  if (std::all_of(clients.begin(), clients.end(), [](const Client& each) { return each.isSaved; }))
    for (const Client& each : clients) SmsDie(each.connection);
}

void closed(SmsConn connection, SmPointer, int, char** reasons) {
  SmFreeReasons(0, reasons);
  const IceConn below = SmsGetIceConnection(connection);
  clients.erase(std::remove_if(clients.begin(), clients.end(),
                               [&](const Client& each) { return each.connection == connection; }),
                clients.end());
  SmsCleanUp(connection);
  IceSetShutdownNegotiation(below, False);
  IceCloseConnection(below);
  say("left");
}

Status newClient(SmsConn connection, SmPointer, unsigned long* mask, SmsCallbacks* calls, char**) {
  clients.push_back({connection, false});
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
          SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
          SmsGetPropertiesProcMask;
  calls->register_client.callback = registerClient;
  calls->interact_request.callback = [](SmsConn of, SmPointer, int) { SmsInteract(of); };
  calls->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
  calls->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
  calls->save_yourself_phase2_request.callback = [](SmsConn of, SmPointer) { SmsSaveYourselfPhase2(of); };
  calls->save_yourself_done.callback = saved;
  calls->close_connection.callback = closed;
  calls->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp** properties) {
    std::for_each(properties, properties + count, SmFreeProperty);
    std::free(static_cast<void*>(properties));
  };
  calls->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
  calls->get_properties.callback = [](SmsConn of, SmPointer) { SmsReturnProperties(of, 0, nullptr); };
  return 1;
}

int endSignals() {
  sigset_t asked;
  sigemptyset(&asked);
  sigaddset(&asked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &asked, nullptr);
  return signalfd(-1, &asked, SFD_CLOEXEC);
}

void endSession(int signals) {
  signalfd_siginfo which;
  if (read(signals, &which, sizeof which) != sizeof which) return;
  isEnding = true;
  for (const Client& each : clients) save(each.connection, true);
}

void process(IceConn connection) {
  if (IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesIOError) return;
  // It went without a word.
  clients.erase(
      std::remove_if(clients.begin(), clients.end(),
                     [&](const Client& each) { return SmsGetIceConnection(each.connection) == connection; }),
      clients.end());
  IceSetShutdownNegotiation(connection, False);
  IceCloseConnection(connection);
  say("left");
}

std::vector<pollfd> watched(int signals, int listenerCount, IceListenObj* listeners,
                            const std::vector<IceConn>& connections) {
  std::vector<pollfd> all = {{.fd = signals, .events = POLLIN, .revents = 0}};
  for (int i = 0; i < listenerCount; ++i)
    all.push_back({.fd = IceGetListenConnectionNumber(listeners[i]), .events = POLLIN, .revents = 0});
  for (const IceConn& each : connections)
    all.push_back({.fd = IceConnectionNumber(each), .events = POLLIN, .revents = 0});
  return all;
}

// The library tells who came and who went.
std::vector<IceConn>& connections() {
  static std::vector<IceConn> all;
  return all;
}
void watchConnection(IceConn connection, IcePointer, Bool isOpening, IcePointer*) {
  if (isOpening != 0) return connections().push_back(connection);
  auto& all = connections();
  all.erase(std::remove(all.begin(), all.end(), connection), all.end());
}

void serve(int signals, int listenerCount, IceListenObj* listeners) {
  for (;;) {
    const std::vector<IceConn> now = connections();
    std::vector<pollfd> all = watched(signals, listenerCount, listeners, now);
    if (poll(all.data(), all.size(), -1) < 0) continue;
    if (all.front().revents != 0) endSession(signals);
    for (int i = 0; i < listenerCount; ++i) {
      IceAcceptStatus status = IceAcceptSuccess;
      if (all[1 + i].revents != 0) IceAcceptConnection(listeners[i], &status);
    }
    for (std::size_t i = 0; i < now.size(); ++i)
      if (all[1 + listenerCount + i].revents != 0) process(now[i]);
  }
}

}  // namespace

int main() {
  const int signals = endSignals();
  // What comes from a connection that broke is told by its status.
  std::signal(SIGPIPE, SIG_IGN);
  IceSetIOErrorHandler([](IceConn) {});
  IceAddConnectionWatch(watchConnection, nullptr);
  char problem[256] = "";
  char vendor[] = "halvorn-tests";
  char release[] = "1";
  const IceHostBasedAuthProc anybody = [](char*) -> Bool { return True; };
  if (SmsInitialize(vendor, release, newClient, nullptr, anybody, sizeof problem, problem) == 0) {
    std::fprintf(stderr, "%s\n", problem);
    return 1;
  }
  _IceTransNoListen("tcp");
  int count = 0;
  IceListenObj* listeners = nullptr;
  if (IceListenForConnections(&count, &listeners, sizeof problem, problem) == 0) {
    std::fprintf(stderr, "%s\n", problem);
    return 1;
  }
  for (int i = 0; i < count; ++i) IceSetHostBasedAuthProc(listeners[i], anybody);
  char* const address = IceComposeNetworkIdList(count, listeners);
  std::printf("SESSION_MANAGER=%s\n", address);
  std::fflush(stdout);
  std::free(address);
  serve(signals, count, listeners);
}
