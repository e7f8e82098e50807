#include "tests/support/Desktop.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace halvorn {
namespace {

std::string nameOf(const std::string& entry) { return entry.substr(0, entry.find('=')); }

void setEntry(std::vector<std::string>& environment, const std::string& entry) {
  for (std::string& present : environment) {
    if (nameOf(present) == nameOf(entry)) {
      present = entry;
      return;
    }
  }
  environment.push_back(entry);
}

// What a desktop part prints is only of interest when it does not come up.
std::runtime_error failed(const std::string& part, ChildProcess& process) {
  const auto status = process.waitForEnd(0.1);
  return std::runtime_error(part + (status ? " ended with " + std::to_string(*status) : " did not come up") +
                            ": " + process.output());
}

constexpr char kKWin[] = "kwin_wayland";
constexpr char kGnome[] = "gnome-shell";

bool isAskedOverTheBus(const DesktopParts& parts) {
  return parts.compositor == Compositor::KWin || parts.compositor == Compositor::Gnome;
}
bool needsBus(const DesktopParts& parts) { return parts.bus || isAskedOverTheBus(parts); }

void endPart(std::unique_ptr<ChildProcess>& part) {
  if (part) part->end(SIGTERM);
  part.reset();
}

// The file is there a moment before anybody listens.
bool takesClients(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int client = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool result = ::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(client);
  return result;
}

}  // namespace

std::string nameOf(Compositor compositor) {
  switch (compositor) {
    case Compositor::None:
      return "X11";
    case Compositor::Sway:
      return "Sway";
    case Compositor::KWin:
      return "KWin";
    case Compositor::Gnome:
      return "Gnome";
    case Compositor::Weston:
      break;
  }
  return "Weston";
}

std::optional<std::string> Desktop::missing(const DesktopParts& parts) {
  if (parts.compositor == Compositor::Sway && !programExists("sway")) return "sway is not installed";
  if (parts.compositor == Compositor::KWin && !programExists(kKWin)) return "kwin-wayland is not installed";
  if (parts.compositor == Compositor::Gnome && !programExists(kGnome)) return "gnome-shell is not installed";
  if (parts.compositor == Compositor::Weston && !programExists("weston")) return "weston is not installed";
  if (parts.xClients && !programExists("Xwayland")) return "xwayland is not installed";
  if (parts.xClients && isAskedOverTheBus(parts) && !programExists("xhost")) return "xhost is not installed";
  const bool isOnX = parts.display && parts.compositor == Compositor::None;
  if (isOnX && !programExists("Xvfb")) return "Xvfb is not installed";
  if (isOnX && parts.windowManager && !programExists("openbox")) return "openbox is not installed";
  if (needsBus(parts) && !programExists("dbus-daemon")) return "dbus-daemon is not installed";
  if ((parts.accessibility || isAskedOverTheBus(parts)) && !programExists("gdbus"))
    return "gdbus is not installed";
  if (parts.accessibility && ::access("/usr/share/dbus-1/services/org.a11y.Bus.service", R_OK) != 0) {
    return "at-spi2-core is not installed";
  }
  return std::nullopt;
}

Desktop::Desktop(const DesktopParts& parts) : kind_(parts.compositor) {
  ::mkdir(homeFolder().c_str(), 0700);
  ::mkdir(runtimeFolder().c_str(), 0700);
  // The server first: services that the bus starts get its environment.
  const bool isOnX = parts.display && parts.compositor == Compositor::None;
  if (isOnX) startXServer();
  if (isOnX && parts.windowManager) startWindowManager();
  if (parts.compositor == Compositor::Sway) startSway(parts.xClients);
  if (parts.compositor == Compositor::Weston) startWeston();
  if (needsBus(parts)) startBus(parts.serviceActivation || parts.accessibility);
  if (parts.compositor == Compositor::KWin) startKWin(parts);
  if (parts.compositor == Compositor::Gnome) startGnome(parts.xClients);
  if (parts.bus && parts.accessibility) startAccessibility();
}

Desktop::~Desktop() {
  endPart(bus_);
  endPart(windowManager_);
  endPart(xServer_);
  endPart(compositor_);
  endPart(systemBus_);
}

std::vector<std::string> Desktop::environment() const {
  std::vector<std::string> result = {"HOME=" + homeFolder(), "XDG_RUNTIME_DIR=" + runtimeFolder(),
                                     "LANG=C.UTF-8"};
  // Tests run as the administrator in containers, whose only account that is.
  if (::geteuid() == 0) result.emplace_back("HALVORN_AS_ROOT=container");
  for (const char* name :
       {"PATH", "TMPDIR", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) result.push_back(std::string(name) + "=" + value);
  }
  if (!displayName_.empty()) {
    result.push_back("DISPLAY=" + displayName_);
    if (waylandDisplay_.empty()) result.push_back("XDG_SESSION_TYPE=x11");
  }
  if (!waylandDisplay_.empty()) {
    result.push_back("WAYLAND_DISPLAY=" + waylandDisplay_);
    result.push_back("XDG_SESSION_TYPE=wayland");
  }
  if (!busAddress_.empty()) result.push_back("DBUS_SESSION_BUS_ADDRESS=" + busAddress_);
  if (!accessibilityAddress_.empty()) result.push_back("QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1");
  for (const std::string& entry : added_) setEntry(result, entry);
  return result;
}

std::vector<std::string> Desktop::environmentWith(const std::vector<std::string>& entries) const {
  std::vector<std::string> result = environment();
  for (const std::string& entry : entries) setEntry(result, entry);
  return result;
}

void Desktop::startXServer() {
  // The server picks a free number itself and writes it to the descriptor once it takes clients.
  xServer_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                               "-noreset"},
      ChildOptions{.environment = environment(), .signalWhenTestDies = SIGTERM});
  // Its warnings come on the same pipe; the number is the line of digits.
  for (;;) {
    const auto line = xServer_->readLine(kTestPatience);
    if (!line) throw failed("Xvfb", *xServer_);
    if (!line->empty() && line->find_first_not_of("0123456789") == std::string::npos) {
      displayName_ = ":" + *line;
      return;
    }
  }
}

std::string Desktop::waylandSocket() const {
  if (waylandDisplay_.empty()) return "";
  return std::filesystem::weakly_canonical(runtimeFolder() + "/" + waylandDisplay_).string();
}

// Without a screen and without devices. It does not run for the superuser, and need not: in a namespace of its
// own it is somebody else, while its clients stay who they are.
void Desktop::startSway(bool xClients) {
  const std::string configuration = folder_ / "sway.conf";
  std::ofstream(configuration) << "xwayland " << (xClients ? "enable" : "disable") << "\n"
                               << "output HEADLESS-1 resolution 1280x800\n"
                               // With a title, a window moves some time after it has come.
                               << "default_border none\ndefault_floating_border none\n"
                               << "for_window [app_id=\".*\"] floating enable, border none\n"
                               << "for_window [class=\".*\"] floating enable, border none\n"
                               << "exec echo serves \"$SWAYSOCK\" \"$WAYLAND_DISPLAY\" \"$DISPLAY\"\n";
  std::vector<std::string> command = {"setpriv", "--pdeathsig", "TERM", "sway", "-c", configuration};
  if (::geteuid() == 0) {
    const std::vector<std::string> asSomebody = {"unshare", "--user", "--map-user=1000", "--map-group=1000"};
    command.insert(command.begin(), asSomebody.begin(), asSomebody.end());
  }
  compositor_ = std::make_unique<ChildProcess>(
      command, ChildOptions{.environment = environmentWith({"WLR_BACKENDS=headless", "WLR_RENDERER=pixman",
                                                            "WLR_LIBINPUT_NO_DEVICES=1"}),
                            .signalWhenTestDies = SIGTERM});
  const std::string answer = "serves ";
  for (;;) {
    const auto line = compositor_->readLine(kTestPatience);
    if (!line) throw failed("sway", *compositor_);
    if (line->rfind(answer, 0) != 0) continue;
    std::istringstream parts(line->substr(answer.size()));
    parts >> swaySocket_ >> waylandDisplay_;
    if (xClients) parts >> displayName_;
    return;
  }
}

// A desktop that tells nothing of windows.
void Desktop::startWeston() {
  waylandDisplay_ = "wayland-1";
  compositor_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"weston", "--debug", "--backend=headless-backend.so", "--use-pixman",
                               "--width=1280", "--height=800", "--socket=" + waylandDisplay_, "--idle-time=0",
                               "--no-config"},
      ChildOptions{.environment = environment(), .signalWhenTestDies = SIGTERM});
  if (!eventually([&] { return takesClients(waylandSocket()); })) {
    throw failed("weston", *compositor_);
  }
}

namespace {

// What a desktop gives a program that may press keys and buttons: its entry asks for that.
void permitHands(const std::filesystem::path& dataFolder) {
  std::filesystem::create_directories(dataFolder / "applications");
  std::ofstream(dataFolder / "applications/hands.desktop")
      << "[Desktop Entry]\nType=Application\nName=Hands\nNoDisplay=true\nExec=" KT_BINARY_DIR
         "/tests/kt_kwin_hands\nX-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n";
}

std::vector<std::string> kwinCommand(const std::string& program, const std::string& display) {
  return {program,           "--virtual",
          "--width",         "1280",
          "--height",        "800",
          "--scale",         "1",
          "--no-lockscreen", "--no-global-shortcuts",
          "--socket",        display};
}

}  // namespace

// A copy, which lacks the capability that its file has: a container may not give that, and does not start it then. Its
// permissions are as on a desktop: without them it would read every client's program twice to know it again, which
// takes longer than a start waits where the program is large.
void Desktop::startKWin(const DesktopParts& parts) {
  const std::string program = folder_ / kKWin;
  const CommandResult found = runCommand({"which", kKWin});
  std::filesystem::copy_file(found.output.substr(0, found.output.find('\n')), program);
  permitHands(folder_ / "data");
  const std::string display = "wayland-1";
  std::vector<std::string> command = kwinCommand(program, display);
  // What it starts is told the display for X programs, and the password, which the test program need not know.
  const std::string displayFile = folder_ / "display";
  if (parts.xClients)
    command.insert(command.end(),
                   {"--xwayland", "sh -c 'xhost +local: && echo $DISPLAY >" + displayFile + "'"});
  // Drawn without a graphics library it is quicker to start and to end, and makes no pictures.
  const std::string drawing = parts.pictures ? "KWIN_COMPOSE=O2" : "KWIN_COMPOSE=Q";
  compositor_ = std::make_unique<ChildProcess>(
      command,
      ChildOptions{.environment = environmentWith({drawing, "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1",
                                                   "XDG_DATA_DIRS=" + folder_ / "data" + ":/usr/share"}),
                   .signalWhenTestDies = SIGTERM});
  waylandDisplay_ = display;
  const std::vector<std::string> question = {
      "sh", "-c",
      "exec gdbus call --session --timeout 2 -d org.kde.KWin -o /Scripting "
      "-m org.kde.kwin.Scripting.isScriptLoaded none"};
  const auto answers = [&] { return runCommand(question, {.environment = environment()}).status == 0; };
  // It serves nobody before its loop runs: one that connects again and again would only fill its queue.
  if (!eventually([&] { return takesClients(waylandSocket()); }) || !eventually(answers))
    throw failed(kKWin, *compositor_);
  const auto isTold = [&] {
    std::ifstream file(displayFile);
    return std::getline(file, displayName_) && !displayName_.empty();
  };
  if (parts.xClients && !eventually(isTold)) throw failed("Xwayland", *compositor_);
}

// In a mode that lets the test ask and order it everything, which changes nothing for programs: they are not told how.
void Desktop::startGnome(bool xClients) {
  std::string systemBus;
  systemBus_ = startedBus("system", false, systemBus);
  const std::string display = "wayland-1";
  std::vector<std::string> command = {kGnome,     "--headless",        "--wayland", "--virtual-monitor",
                                      "1280x800", "--wayland-display", display,     "--unsafe-mode"};
  if (!xClients) command.emplace_back("--no-x11");
  compositor_ = std::make_unique<ChildProcess>(
      command, ChildOptions{.environment = environmentWith(
                                {"GSETTINGS_BACKEND=memory", "DBUS_SYSTEM_BUS_ADDRESS=" + systemBus}),
                            .signalWhenTestDies = SIGTERM});
  const std::string ofX = "Using public X11 display ";
  for (std::string serves; serves.empty();) {
    const auto line = compositor_->readLine(kTestPatience);
    if (!line) throw failed(kGnome, *compositor_);
    const std::size_t number = line->find(ofX);
    if (number != std::string::npos)
      displayName_ = line->substr(number + ofX.size(), line->find(',', number) - number - ofX.size());
    if (line->find("GNOME Shell started") != std::string::npos) serves = *line;
  }
  waylandDisplay_ = display;
  if (xClients) openGuest();
  // It begins with an overview, where no window has the keyboard.
  if (evaluated("Main.overview.hide()").find("(true,") == std::string::npos)
    throw failed(kGnome, *compositor_);
}

// The X server of that compositor lets in only who knows the newest password, which the test program does not.
void Desktop::openGuest() const {
  for (const auto& entry : std::filesystem::directory_iterator(runtimeFolder())) {
    if (!entry.path().filename().string().starts_with(".mutter-Xwaylandauth.")) continue;
    const auto opened = runCommand({"xhost", "+local:"},
                                   {.environment = environmentWith({"XAUTHORITY=" + entry.path().string()})});
    if (opened.status != 0) throw std::runtime_error("xhost: " + opened.output);
  }
}

std::string Desktop::evaluated(const std::string& script) const {
  return runCommand({"gdbus", "call", "--session", "--timeout", "10", "-d", "org.gnome.Shell", "-o",
                     "/org/gnome/Shell", "-m", "org.gnome.Shell.Eval", script},
                    {.environment = environment()}, kTestPatience)
      .output;
}

void Desktop::startWindowManager() {
  // The window manager announces itself before it serves map requests, and a window mapped in between is
  // lost; its start-up command runs when it really serves.
  windowManager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"openbox", "--sm-disable", "--startup", "echo window-manager-ready"},
      ChildOptions{.environment = environment(), .signalWhenTestDies = SIGTERM});
  if (!windowManager_->waitForOutput("window-manager-ready\n", kTestPatience)) {
    throw failed("openbox", *windowManager_);
  }
}

void Desktop::startBus(bool serviceActivation) {
  bus_ = startedBus("session", serviceActivation, busAddress_);
}

std::unique_ptr<ChildProcess> Desktop::startedBus(const std::string& name, bool serviceActivation,
                                                  std::string& address) {
  const std::string configuration = folder_ / (name + "-bus.conf");
  std::ofstream(configuration)
      << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
         " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n<busconfig><type>session</"
         "type>\n"
      << "<listen>unix:path=" << runtimeFolder() << (name == "session" ? "/bus" : "/" + name + "-bus")
      << "</listen><auth>EXTERNAL</auth>\n"
      << (serviceActivation ? "<standard_session_servicedirs/>\n" : "")
      << "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
         "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
  auto bus = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork", "--nopidfile",
                               "--nosyslog", "--print-address"},
      ChildOptions{.environment = environment(), .signalWhenTestDies = SIGTERM});
  for (;;) {
    const auto line = bus->readLine(kTestPatience);
    if (!line) throw failed("dbus-daemon", *bus);
    if (line->rfind("unix:", 0) != 0) continue;
    address = *line;
    return bus;
  }
}

void Desktop::startAccessibility() {
  const std::vector<std::string> call = {"gdbus",        "call", "--session",     "-d",
                                         "org.a11y.Bus", "-o",   "/org/a11y/bus", "-m"};
  const auto asked = [&](std::vector<std::string> rest) {
    rest.insert(rest.begin(), call.begin(), call.end());
    const CommandResult result = runCommand(rest, {.environment = environment()}, kTestPatience);
    if (result.status != 0) throw std::runtime_error("accessibility bus: " + result.output);
    return result.output;
  };
  asked({"org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>"});
  const std::string answer = asked({"org.a11y.Bus.GetAddress"});  // ('unix:path=...',)
  const std::size_t start = answer.find('\'');
  const std::size_t end = answer.rfind('\'');
  if (start == std::string::npos || end <= start) throw std::runtime_error("accessibility bus: " + answer);
  accessibilityAddress_ = answer.substr(start + 1, end - start - 1);
}

}  // namespace halvorn
