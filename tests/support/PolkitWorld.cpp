#include "tests/support/PolkitWorld.h"

#include <pwd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tests/support/OwnMounts.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// The crypt() form of PolkitWorld::password.
constexpr const char* kPasswordHash =
    "$6$halvorn$1zs9VoKZDKfWzS4KVK.mIwILB5x3qd2FPF.0lY8s1sJKogsxM5qjMOEbQjQ3wUY8S6y8jDrgRV1sPDj4jQJIN.";

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

void write(const std::string& path, const std::string& text, mode_t mode = 0644) {
  std::ofstream(path, std::ios::binary) << text;
  if (::chmod(path.c_str(), mode) != 0) fail(path);
}

std::string read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void makeFolder(const std::string& path, mode_t mode = 0755) {
  fs::create_directories(path);
  if (::chmod(path.c_str(), mode) != 0) fail(path);
}

std::optional<uid_t> userNamed(const char* name) {
  const passwd* entry = ::getpwnam(name);
  return entry != nullptr ? std::optional(entry->pw_uid) : std::nullopt;
}

}  // namespace

std::optional<std::string> PolkitWorld::missing() {
  if (::geteuid() != 0) return "needs root to make accounts and a system bus of its own";
  for (const char* program : {"dbus-daemon", "pkexec", "setpriv"}) {
    if (!programExists(program)) return std::string("no ") + program;
  }
  if (!userNamed("polkitd") || !userNamed("messagebus")) return "no policy daemon";
  return whyNoOwnMounts();
}

std::string PolkitWorld::ruleAnswering(const std::string& answer) {
  return "polkit.addRule(function(action, subject) {"
         " if (action.id == 'org.freedesktop.policykit.exec' && subject.user == 'halvorn-person')"
         " return polkit.Result." +
         answer + "; });\n";
}

PolkitWorld::PolkitWorld(const PolkitWorldParts& parts) {
  enterOwnNamespace();
  mount("tmpfs", folder_.path(), "tmpfs", 0, "mode=755");
  makeFolder(scratchFolder());
  mount("tmpfs", "/run", "tmpfs", 0, "mode=755");
  makeFolder("/run/dbus");
  mount("tmpfs", "/opt", "tmpfs", 0, "mode=755");
  writeAccounts();
  writePolicy(parts);
  if (parts.bus) startBus();
}

PolkitWorld::~PolkitWorld() {
  if (bus_) bus_->end();
  killWhatIsLeft();
  while (!mounted_.empty()) {
    ::umount2(mounted_.back().c_str(), MNT_DETACH);
    mounted_.pop_back();
  }
}

void PolkitWorld::enterOwnNamespace() {
  if (const auto reason = enterOwnMounts()) throw std::runtime_error(*reason);
}

void PolkitWorld::mount(const std::string& source, const std::string& target, const std::string& type,
                        unsigned long flags, const std::string& data) {
  if (::mount(source.c_str(), target.c_str(), type.c_str(), flags, data.c_str()) != 0)
    fail("mount " + target);
  mounted_.push_back(target);
}

void PolkitWorld::layOver(const std::string& machineFolder, const std::string& name) {
  const std::string upper = folder_ / (name + ".upper");
  const std::string work = folder_ / (name + ".work");
  makeFolder(upper);
  makeFolder(work);
  mount("overlay", machineFolder, "overlay", 0,
        "lowerdir=" + machineFolder + ",upperdir=" + upper + ",workdir=" + work);
}

void PolkitWorld::writeAccounts() {
  const std::string accounts = folder_ / "accounts";
  makeFolder(accounts);
  makeFolder("/opt/people");
  makeFolder(homeFolder(), 0700);
  if (::chown(homeFolder().c_str(), personId, personId) != 0) fail(homeFolder());

  const auto replace = [&](const std::string& file, const std::string& added, mode_t mode) {
    struct stat facts {};
    ::stat(("/etc/" + file).c_str(), &facts);
    write(accounts + "/" + file, read("/etc/" + file) + added, mode);
    if (::chown((accounts + "/" + file).c_str(), facts.st_uid, facts.st_gid) != 0) fail(file);
    mount(accounts + "/" + file, "/etc/" + file, "none", MS_BIND, "");
  };
  replace("passwd",
          "halvorn-person:x:64101:64101::" + homeFolder() +
              ":/bin/sh\n"
              "halvorn-admin:x:64102:64102::/nonexistent:/bin/sh\n",
          0644);
  replace("group", "halvorn-person:x:64101:\nhalvorn-admin:x:64102:\nhalvorn-extra:x:64103:halvorn-person\n",
          0644);
  replace("shadow",
          std::string("halvorn-person:!:19000::::::\nhalvorn-admin:") + kPasswordHash + ":19000::::::\n",
          0640);
}

void PolkitWorld::writePolicy(const PolkitWorldParts& parts) {
  // The machine's own way of checking passwords may wait for seconds after a wrong one.
  layOver("/etc/pam.d", "pam");
  write("/etc/pam.d/polkit-1",
        "auth required pam_unix.so nodelay\naccount required pam_unix.so\n"
        "password required pam_deny.so\nsession required pam_permit.so\n");
  const std::string rules = "/etc/polkit-1/rules.d";
  mount("tmpfs", rules, "tmpfs", 0, "mode=755");
  write(rules + "/00-test.rules",
        "polkit.addAdminRule(function(action, subject) { return ['unix-user:halvorn-admin']; });\n" +
            parts.rules);
  if (!parts.action.empty()) {
    const std::string actions = "/usr/share/polkit-1/actions";
    layOver(actions, "actions");
    fs::copy_file(parts.action, fs::path(actions) / fs::path(parts.action).filename());
  }
  if (!parts.policyDaemon) {
    const std::string services = "/usr/share/dbus-1/system-services";
    layOver(services, "services");
    fs::remove(services + "/org.freedesktop.PolicyKit1.service");
  }
}

void PolkitWorld::startBus() {
  bus_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--system", "--nofork", "--nopidfile", "--nosyslog"});
  const std::string socket = "/run/dbus/system_bus_socket";
  if (!eventually([&] { return fs::exists(socket); })) {
    throw std::runtime_error("the system bus does not come up: " + bus_->output());
  }
}

// Ends the policy daemon and whatever else was started in this world: the processes in its mount namespace.
void PolkitWorld::killWhatIsLeft() {
  std::error_code ignored;
  const fs::path ours = fs::read_symlink("/proc/self/ns/mnt", ignored);
  const auto inThisWorld = [&] {
    std::vector<pid_t> pids;
    for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
      const int pid = std::atoi(entry.path().filename().c_str());
      if (pid > 0 && pid != ::getpid() && fs::read_symlink(entry.path() / "ns/mnt", ignored) == ours) {
        pids.push_back(pid);
      }
    }
    return pids;
  };
  (void)eventually(
      [&] {
        const auto pids = inThisWorld();
        for (const pid_t pid : pids) ::kill(pid, SIGKILL);
        return pids.empty();
      },
      5);
}

std::vector<std::string> PolkitWorld::asPerson(const std::vector<std::string>& command) const {
  std::vector<std::string> words{
      "setpriv", "--reuid=halvorn-person", "--regid=halvorn-person", "--init-groups", "--pdeathsig", "KILL"};
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

std::vector<std::string> PolkitWorld::personsEnvironment() const {
  return {"HOME=" + homeFolder(),
          "USER=halvorn-person",
          "LOGNAME=halvorn-person",
          "SHELL=/bin/sh",
          "PATH=/usr/local/bin:/usr/bin:/bin",
          "LANG=C.UTF-8"};
}

}  // namespace halvorn
