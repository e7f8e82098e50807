#include "Platform/session/linux/bus/KWinScripting.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <tuple>
#include <utility>

#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/session/linux/bus/OwnerOfCompositor.h"

namespace halvorn {
namespace {

constexpr char kName[] = "org.kde.KWin";
constexpr char kScriptingPath[] = "/Scripting";
constexpr char kScripting[] = "org.kde.kwin.Scripting";
constexpr char kScript[] = "org.kde.kwin.Script";
// Where we are told things.
constexpr char kOurPath[] = "/Windows";
constexpr char kOurInterface[] = "example.halvorn.Windows";
constexpr char kTold[] = "Told";

// A file that is there while the script is read of it.
class ScriptFile {
 public:
  ScriptFile(const std::string& folder, std::string_view script) : path_(folder + "/halvorn-XXXXXX") {
    FileDescriptor file(::mkostemp(path_.data(), O_CLOEXEC));
    if (!file) return;
    isThere_ = true;
    isWhole_ = retried([&] { return ::write(file.get(), script.data(), script.size()); }) ==
                   static_cast<ssize_t>(script.size()) &&
               file.closeAfterWriting();
  }
  ~ScriptFile() {
    if (isThere_) ::unlink(path_.c_str());
  }
  ScriptFile(const ScriptFile&) = delete;
  ScriptFile& operator=(const ScriptFile&) = delete;

  [[nodiscard]] bool isWhole() const { return isWhole_; }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
  bool isThere_ = false;
  bool isWhole_ = false;
};

void append(const BusMessage& message, const std::string& text) {
  const char* const bytes = text.c_str();
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &bytes, DBUS_TYPE_INVALID);
}

bool isFrom(DBusMessage* message, const std::string& name) {
  const char* const sender = dbus_message_get_sender(message);
  return sender != nullptr && name == sender;
}

}  // namespace

std::unique_ptr<KWinScripting> KWinScripting::open(const std::string& busAddress,
                                                   const Compositor& compositor,
                                                   std::chrono::milliseconds patience) {
  const double seconds = std::chrono::duration<double>(patience).count();
  auto bus = BusConnection::open(busAddress, seconds);
  const auto owner = bus ? compositorWithName(*bus, kName, compositor.listener) : std::nullopt;
  if (!owner) return nullptr;
  bus->addMatch("type='signal',sender='" DBUS_SERVICE_DBUS "',member='NameOwnerChanged',arg0='" + *owner +
                "'");
  std::unique_ptr<KWinScripting> result(
      new KWinScripting(std::move(bus), *owner, compositor.folder, seconds));
  return result->roundTrip() ? std::move(result) : nullptr;
}

KWinScripting::KWinScripting(std::unique_ptr<BusConnection> bus, std::string owner, std::string folder,
                             double patience)
    : bus_(std::move(bus)), owner_(std::move(owner)), folder_(std::move(folder)), patience_(patience) {
  bus_->takeCalls();
}

KWinScripting::~KWinScripting() {
  if (!kept_.empty()) unload(kept_);
}

BusMessage KWinScripting::call(const std::string& path, const char* interface, const char* member) const {
  return methodCall({owner_, path, interface, member});
}

bool KWinScripting::keep(const std::string& script, std::function<void(const std::string&)> told) {
  told_ = std::move(told);
  kept_ = bus_->name() + "/kept";
  const std::string tell = "function tell(text) { callDBus('" + bus_->name() + "', '" + kOurPath + "', '" +
                           kOurInterface + "', '" + kTold + "', text); }\n";
  return load(kept_, tell + script) && roundTrip();
}

void KWinScripting::run(const std::string& script) {
  // Whoever is silent is not waited for.
  if (!roundTrip()) return;
  const std::string name = bus_->name() + "/" + std::to_string(++lastScript_);
  std::ignore = load(name, script);
  unload(name);
}

bool KWinScripting::load(const std::string& name, const std::string& script) {
  const ScriptFile file(folder_, script);
  if (!file.isWhole()) return false;
  const BusMessage message = call(kScriptingPath, kScripting, "loadScript");
  if (!message) return false;
  append(message, file.path());
  append(message, name);
  const CallResult result = bus_->call(message, patience_);
  const auto* const reply = std::get_if<BusMessage>(&result);
  dbus_int32_t number = -1;
  const bool isLoaded = reply != nullptr && dbus_message_get_args(reply->get(), nullptr, DBUS_TYPE_INT32,
                                                                  &number, DBUS_TYPE_INVALID);
  return isLoaded && number >= 0 && start(number);
}

// It answers when the script has run. Where scripts lie depends on the version.
bool KWinScripting::start(int number) {
  for (const char* const path : {"/Scripting/Script", "/"}) {
    const CallResult result = bus_->call(call(path + std::to_string(number), kScript, "run"), patience_);
    if (const auto* const failure = std::get_if<CallFailure>(&result)) {
      if (*failure == CallFailure::NoSuchMethod) continue;
      return false;
    }
    return true;
  }
  return false;
}

void KWinScripting::unload(const std::string& name) {
  const BusMessage message = call(kScriptingPath, kScripting, "unloadScript");
  if (!message) return;
  append(message, name);
  bus_->send(message);
}

bool KWinScripting::roundTrip() {
  readMessages();
  // Whoever let one question wait too long is not waited for with the next one.
  if (!isUsable() || question_) return false;
  // Answered by the same thread that runs scripts, behind what they told before.
  const BusMessage message = call(kScriptingPath, kScripting, "isScriptLoaded");
  if (!message) return false;
  append(message, kept_);
  question_ = bus_->ask(message);
  if (!question_) return false;
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(patience_);
  while (question_ && isUsable()) {
    const double left = std::chrono::duration<double>(end - Clock::now()).count();
    if (left <= 0) return false;
    bus_->waitForMessages(left);
    readMessages();
  }
  return isUsable();
}

void KWinScripting::readMessages() {
  bus_->readMessages([this](DBusMessage* message) { take(message); });
}

void KWinScripting::take(DBusMessage* message) {
  if (question_ && dbus_message_get_reply_serial(message) == *question_) {
    question_.reset();
    return;
  }
  if (dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, "NameOwnerChanged") &&
      isFrom(message, DBUS_SERVICE_DBUS)) {
    hasGone_ = true;
    return;
  }
  if (!dbus_message_is_method_call(message, kOurInterface, kTold) || !isFrom(message, owner_)) return;
  const char* text = nullptr;
  if (dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID) && told_)
    told_(text);
  // Else the bus would remember the question for as long as it runs.
  bus_->send(BusMessage(dbus_message_new_method_return(message)));
}

}  // namespace halvorn
