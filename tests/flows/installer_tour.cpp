// Shows the installer at work where nobody sits in front of it: brings a desktop of its own, installs a
// sample product over an older, running copy with real mouse clicks, and leaves a picture of every state.
//
// usage: installer_tour [--wayland [sway|kwin|gnome]] FOLDER    On an X desktop, or a Wayland one. Pictures go to FOLDER. Exit
// status 1 when anything differs from what must happen.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Desktop.h"
#include "tests/support/InstallerDriver.h"
#include "tests/support/SampleProduct.h"
#include "tests/support/SharedApplications.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

void must(bool isTrue, const std::string& what) {
  if (!isTrue) throw std::runtime_error(what);
  std::printf("  %s\n", what.c_str());
  std::fflush(stdout);
}

class Tour {
 public:
  // With the destination given, nothing looks for it in the folder of all users' applications.
  enum class Destination { Found, Given };
  Tour(fs::path folder, Destination destination, const DesktopParts& parts)
      : folder_(std::move(folder)), destination_(destination), desktop_(parts) {
    fs::create_directories(image());
  }

  void install() {
    std::puts("A product is installed over an older copy that runs:");
    fs::create_directories(applications());
    const fs::path old = makeSampleProduct(applications(), {.version = "1.0"});
    ChildProcess running({old / "Contents/Linux/Sample"}, {.environment = desktop_.environment()});
    must(windowAppears("Sample 1.0"), "version 1.0 runs and shows its window");

    const fs::path product = makeSampleProduct(image());
    std::vector<std::string> arguments = {
        "-sourcePath", product, "-readMePath", makeReadMe(image()), "-documentationPath", makeGuide(image())};
    if (destination_ == Destination::Given) {
      arguments.insert(arguments.end(), {"-destinationPath", applications() / "Sample.app"});
    }
    InstallerDriver installer(desktop_, arguments);
    must(installer.waitForButton("Continue", 60), "the read-me page comes up");
    picture(installer, "1-read-me");
    must(installer.click("Continue"), "Continue is clicked");
    must(installer.waitForButton("Install", 20), "the install page comes up");
    picture(installer, "2-install-page");
    must(installer.click("Install"), "Install is clicked");
    picture(installer, "3-running");
    must(installer.waitForText("Sample was successfully installed.", 60), "the final message appears");
    must(windowAppears("Sample 2.0"), "version 2.0 was launched and shows its window");
    picture(installer, "4-final-message");
    must(!running.isRunning(), "version 1.0 has quit");
    must(versionOfBundle(applications() / "Sample.app") == "2.0",
         "version 2.0 lies in the Applications folder");
    must(versionOfBundle(desktop_.homeFolder() + "/.local/share/Trash/files/Sample.app") == "1.0",
         "version 1.0 lies in the Trash");
    must(installer.click("OK"), "OK is clicked");
    must(installer.process().waitForEnd(20) == 0, "the installer has quit");
    checkLog();
  }

  void refuseForNewerSystem() {
    std::puts("A product that needs a newer system is refused:");
    fs::remove_all(image());
    const fs::path product = makeSampleProduct(image(), {.minSystemVersion = "99.1"});
    InstallerDriver installer(desktop_, {"-sourcePath", product});
    must(installer.waitForButton("Visit Archive", 60), "the version alert comes up");
    picture(installer, "5-version-alert");
    must(installer.click("Quit"), "Quit is clicked");
    must(installer.process().waitForEnd(20) == 0, "the installer has quit");
  }

  void showSetUpError() {
    std::puts("A product without a signature cannot be set up:");
    fs::remove_all(image());
    const fs::path product = makeSampleProduct(image(), {.signature = std::nullopt});
    InstallerDriver installer(desktop_, {"-sourcePath", product});
    must(installer.waitForText("missing product signature", 60), "the set-up error is shown");
    picture(installer, "6-set-up-error");
    must(installer.click("OK"), "OK is clicked");
    must(installer.process().waitForEnd(20) == 0, "the installer has quit");
  }

  // What the installed product left running.
  void tidyUp() const {
    for (const auto& entry : fs::directory_iterator("/proc")) {
      std::error_code problem;
      const std::string program = fs::read_symlink(entry.path() / "exe", problem);
      if (problem || program.rfind(applications().string() + "/", 0) != 0) continue;
      ::kill(static_cast<pid_t>(std::stoi(entry.path().filename())), SIGKILL);
    }
  }

 private:
  [[nodiscard]] fs::path image() const { return folder_ / "image" / "NAS"; }
  [[nodiscard]] fs::path applications() const { return desktop_.homeFolder() + "/Applications"; }

  [[nodiscard]] bool windowAppears(const std::string& title) const {
    return eventually(
        [&] {
          if (!desktop_.waylandDisplay().empty()) return windowIsTold(title);
          return runCommand({"xdotool", "search", "--onlyvisible", "--name", "^" + title + "$"},
                            {.environment = desktop_.environment()})
                     .status == 0;
        },
        30);
  }

  // By a compositor that describes what it shows, or finds it.
  [[nodiscard]] bool windowIsTold(const std::string& title) const {
    const auto told = [&](const std::vector<std::string>& command) {
      return runCommand(command, {.environment = desktop_.environment()}).output;
    };
    if (desktop_.kind() == Compositor::Gnome) {
      return desktop_.evaluated("global.get_window_actors().map(a => '<' + a.meta_window.get_title() + '>')")
                 .find("<" + title + ">") != std::string::npos;
    }
    if (desktop_.kind() == Compositor::KWin) {
      return told({"gdbus", "call", "--session", "-d", "org.kde.KWin", "-o", "/WindowsRunner", "-m",
                   "org.kde.krunner1.Match", title})
                 .find("'" + title + "'") != std::string::npos;
    }
    return told({"swaymsg", "-s", desktop_.swaySocket(), "-r", "-t", "get_tree"})
               .find("\"name\": \"" + title + "\"") != std::string::npos;
  }

  void picture(const InstallerDriver& installer, const std::string& name) const {
    const fs::path file = folder_ / (name + ".png");
    installer.screenshot(file);
    must(fs::file_size(file) > 0, "picture: " + file.string());
  }

  void checkLog() const {
    std::ifstream file(desktop_.homeFolder() + "/Library/Logs/HalvornInstaller.log");
    std::ostringstream text;
    text << file.rdbuf();
    std::printf("The log:\n%s", text.str().c_str());
    const auto lines = logLines(text.str());
    const std::string destination = applications() / "Sample.app";
    auto at = lines.begin();
    for (const std::string& expected :
         {std::string("Install"), std::string("Quitting 'SMPL': Sample"), std::string("successfully copied"),
          "launching " + destination, std::string("registered app: 0"),
          std::string("launched immediately: 1")}) {
      at = std::find(at, lines.end(), expected);
      must(at != lines.end(), "logged in its place: " + expected);
    }
  }

  fs::path folder_;
  Destination destination_;
  Desktop desktop_;
};

// Of all words but the last, which is the folder; nullopt for words that mean nothing.
std::optional<Compositor> compositorOf(std::vector<std::string> words) {
  if (words.empty()) return std::nullopt;
  words.pop_back();
  using Words = std::vector<std::string>;
  const std::pair<Words, Compositor> known[] = {{{}, Compositor::None},
                                                {{"--wayland"}, Compositor::Sway},
                                                {{"--wayland", "sway"}, Compositor::Sway},
                                                {{"--wayland", "kwin"}, Compositor::KWin},
                                                {{"--wayland", "gnome"}, Compositor::Gnome}};
  for (const auto& [named, compositor] : known) {
    if (words == named) return compositor;
  }
  return std::nullopt;
}

}  // namespace
}  // namespace halvorn

int main(int argc, char** argv) {
  using namespace halvorn;
  const auto compositor = compositorOf({argv + 1, argv + argc});
  if (!compositor) {
    std::fputs("usage: installer_tour [--wayland [sway|kwin|gnome]] FOLDER\n", stderr);
    return 64;
  }
  const DesktopParts parts{.compositor = *compositor, .pictures = true, .accessibility = true};
  try {
    // Before anything is started.
    const auto destination = hideSharedApplications() ? Tour::Destination::Given : Tour::Destination::Found;
    if (const auto missing = Desktop::missing(parts)) throw std::runtime_error(*missing);
    Tour tour(std::filesystem::absolute(argv[argc - 1]), destination, parts);
    tour.install();
    tour.tidyUp();
    tour.refuseForNewerSystem();
    tour.showSetUpError();
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "installer_tour: this did not happen: %s\n", problem.what());
    return 1;
  }
  std::puts("All went as it must.");
  return 0;
}
