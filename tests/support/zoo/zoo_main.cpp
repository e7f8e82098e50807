// A small program of a made-up session, with the habits that its arguments give it. It says "ready", then
// what happens to it, one line each.
//
//   kt_zoo [HABIT ...]
//
//   --windows N        shows N windows: on Wayland where WAYLAND_DISPLAY is set, but for --x-windows, else on X
//   --x-windows        see above                  --claim-pid N   says in them that it is that process
//   --app-id TEXT      the application of its windows, in place of the program's name
//   --socket PATH      on Wayland: that compositor, whatever the environment says
//   --title TEXT       their title                --claim-machine M
//   --no-pid           says nothing of the kind   --cannot-close  its windows do not take part in closing
//   --ignores-term     SIGTERM does nothing       --ignores-close a closed window does nothing
//   --asks-to-save     asked once it waits; asked again it drops everything and ends with status 9; when it was a
//                      window that was closed, it asks with another one
//   --saves-slowly S   its windows vanish when one is closed, and so long later it says "saved" and ends
//   --forks            asked to end it leaves a copy of itself behind
//   --copy-stays       has a copy of itself from the start, which does nothing
//   --seconds S        so long until it ends, once asked
//   --rename NAME      the name it gives itself in the process table (bytes as they are)
//   --leader-leaves    its first thread ends at a line of input, another one carries on
//   --stops            stops itself, as ^Z does
//   --burns S          uses so many seconds of processor time before it is ready
//   --not-dumpable     hides from other processes of its user
//   --bus NAME         takes the name on the session bus, and exports nothing; with
//   --bus-actions, --bus-other-actions, --bus-application, --bus-toolkit, --bus-silent  see ZooBus.h
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "tests/support/zoo/ZooBus.h"
#include "tests/support/zoo/ZooWayland.h"
#include "tests/support/zoo/ZooWindow.h"

namespace halvorn::zoo {
namespace {

struct Habits {
  WindowOptions windows;
  BusOptions bus;
  bool ignoresTerm = false;
  bool ignoresClose = false;
  bool asksToSave = false;
  bool forks = false;
  bool copyStays = false;
  double secondsToQuit = 0;
  std::string name;
  bool leaderLeaves = false;
  bool stops = false;
  bool isNotDumpable = false;
  double burns = 0;
  double savesFor = 0;
  bool isForX = false;
  std::string applicationId;
  std::string socket;
};

Habits parse(int count, char** arguments) {
  Habits habits;
  habits.applicationId = std::string(arguments[0]).substr(std::string(arguments[0]).rfind('/') + 1);
  const std::map<std::string_view, bool*> switches = {
      {"--ignores-term", &habits.ignoresTerm},
      {"--ignores-close", &habits.ignoresClose},
      {"--asks-to-save", &habits.asksToSave},
      {"--forks", &habits.forks},
      {"--copy-stays", &habits.copyStays},
      {"--leader-leaves", &habits.leaderLeaves},
      {"--stops", &habits.stops},
      {"--not-dumpable", &habits.isNotDumpable},
      {"--bus-actions", &habits.bus.exportsActions},
      {"--bus-other-actions", &habits.bus.exportsOtherActions},
      {"--bus-application", &habits.bus.exportsApplication},
      {"--bus-toolkit", &habits.bus.exportsToolkitQuit},
      {"--bus-silent", &habits.bus.isSilent},
      {"--x-windows", &habits.isForX},
      {"--no-pid", &habits.windows.hidesPid},
      {"--cannot-close", &habits.windows.cannotBeClosed}};
  const std::map<std::string_view, std::string*> texts = {
      {"--title", &habits.windows.title}, {"--claim-machine", &habits.windows.claimedMachine},
      {"--rename", &habits.name},         {"--app-id", &habits.applicationId},
      {"--socket", &habits.socket},       {"--bus", &habits.bus.name}};
  const std::map<std::string_view, double*> numbers = {{"--windows", &habits.windows.count},
                                                       {"--claim-pid", &habits.windows.claimedPid},
                                                       {"--seconds", &habits.secondsToQuit},
                                                       {"--saves-slowly", &habits.savesFor},
                                                       {"--burns", &habits.burns}};
  for (int i = 1; i < count; ++i) {
    const std::string_view habit = arguments[i];
    const char* value = i + 1 < count ? arguments[i + 1] : "";
    if (const auto found = switches.find(habit); found != switches.end()) *found->second = true;
    if (const auto found = texts.find(habit); found != texts.end()) *found->second = value;
    if (const auto found = numbers.find(habit); found != numbers.end()) *found->second = std::atof(value);
  }
  habits.windows.windowClass = habits.applicationId;
  return habits;
}

// In user mode: asking for the time is work of the kernel.
void burn(double seconds) {
  volatile unsigned long long spun = 0;
  timespec time{};
  do {
    for (int i = 0; i < 2'000'000; ++i) spun = spun + 1;
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  } while (static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9 < seconds);
}

class Animal {
 public:
  explicit Animal(const Habits& habits) : habits_(habits) {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGTERM);
    ::sigaddset(&signals, SIGCONT);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    signals_ = ::signalfd(-1, &signals, SFD_CLOEXEC);
    if (habits_.windows.count > 0) openWindows();
    if (!habits_.bus.name.empty()) bus_ = std::make_unique<Bus>(habits_.bus);
  }

  [[noreturn]] void live() {
    if (habits_.copyStays && ::fork() == 0) beCopy();
    for (;;) {
      pollfd entries[] = {{signals_, POLLIN, 0},
                          {windows_ ? windows_->descriptor() : -1, POLLIN, 0},
                          {bus_ ? bus_->descriptor() : -1, POLLIN, 0},
                          {waylandWindows_ ? waylandWindows_->descriptor() : -1, POLLIN, 0}};
      ::poll(entries, 4, -1);
      if (entries[0].revents != 0) readSignal();
      if (windows_) windows_->readEvents([this] { beClosed(); });
      if (waylandWindows_) waylandWindows_->readEvents([this] { beClosed(); });
      if (bus_) bus_->readCalls([this] { leave(); });
    }
  }

 private:
  void openWindows() {
    const char* const compositor = std::getenv("WAYLAND_DISPLAY");
    if (habits_.isForX || compositor == nullptr || *compositor == '\0') {
      windows_ = std::make_unique<Windows>(habits_.windows);
    } else {
      waylandWindows_ = std::make_unique<WaylandWindows>(WaylandOptions{
          habits_.windows.count, habits_.windows.title, habits_.applicationId, habits_.socket});
    }
  }
  void readSignal() {
    signalfd_siginfo information{};
    if (::read(signals_, &information, sizeof information) != sizeof information) return;
    if (information.ssi_signo == SIGCONT) {
      std::puts("continued");
      return;
    }
    std::printf("term %d\n", ++terms_);
    if (habits_.asksToSave) {
      if (terms_ > 1) std::exit(9);
      std::puts("asking");
    } else if (!habits_.ignoresTerm) {
      leave();
    }
  }
  void beClosed() {
    if (habits_.asksToSave) {
      std::puts("asking");
      if (windows_) windows_->open("save?");
      if (waylandWindows_) waylandWindows_->open("save?");
    } else if (habits_.savesFor > 0) {
      if (windows_) windows_->closeAll();
      if (waylandWindows_) waylandWindows_->closeAll();
      saveLater();
    } else if (!habits_.ignoresClose && !habits_.ignoresTerm) {
      leave();
    }
  }
  // Whoever asks it meanwhile asks a program that dies of it.
  void saveLater() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGTERM);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    ::usleep(static_cast<useconds_t>(habits_.savesFor * 1e6));
    std::puts("saved");
    std::_Exit(0);
  }
  void leave() {
    if (habits_.secondsToQuit > 0) ::usleep(static_cast<useconds_t>(habits_.secondsToQuit * 1e6));
    if (habits_.forks && ::fork() == 0) beCopy();
    std::_Exit(0);
  }
  [[noreturn]] void beCopy() {
    // Deaf to what the parent was asked.
    ::close(signals_);
    ::alarm(60);  // nobody watches it any more
    std::printf("forked %d\n", static_cast<int>(::getpid()));
    for (;;) ::pause();
  }

  const Habits habits_;
  int signals_ = -1;
  int terms_ = 0;
  std::unique_ptr<Windows> windows_;
  std::unique_ptr<WaylandWindows> waylandWindows_;
  std::unique_ptr<Bus> bus_;
};

void* carryOn(void* animal) { static_cast<Animal*>(animal)->live(); }

}  // namespace
}  // namespace halvorn::zoo

int main(int count, char** arguments) {
  using namespace halvorn::zoo;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  const Habits habits = parse(count, arguments);
  if (!habits.name.empty()) ::prctl(PR_SET_NAME, habits.name.c_str());
  if (habits.isNotDumpable) ::prctl(PR_SET_DUMPABLE, 0);
  if (habits.burns > 0) burn(habits.burns);
  static Animal* animal = new Animal(habits);
  std::puts("ready");
  if (habits.leaderLeaves) {
    std::getchar();
    pthread_t thread{};
    ::pthread_create(&thread, nullptr, carryOn, animal);
    ::pthread_exit(nullptr);
  }
  if (habits.stops) ::raise(SIGSTOP);
  animal->live();
}
