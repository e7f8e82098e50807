#include "Platform/session/linux/NotifiedMessages.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "Core/ForPeople.h"
#include "Core/Log.h"
#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {
namespace {

const BusTarget kNotify = {"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                           "org.freedesktop.Notifications", "Notify"};
constexpr double kPatience = 2.0;  // seconds

// Servers that show markup take it from the body, so what a name holds is no markup.
std::string withoutMarkup(const Text& sentence) {
  return sentence.replacing("&", "&amp;").replacing("<", "&lt;").replacing(">", "&gt;").bytes();
}

// The lines as servers must have them: in UTF-8, and nothing hidden.
Text plain(const Text& text) {
  std::vector<Text> lines;
  for (const Text& line : text.split(u'\r')) {
    const Text shown = undisguised(line);
    lines.push_back(Text::fromStrictUtf8(shown.bytes()) ? shown : Log::escapedForLog(line));
  }
  return join(lines, "\n");
}

void appendHints(DBusMessageIter& arguments) {
  DBusMessageIter none;
  dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "s", &none);  // no buttons
  dbus_message_iter_close_container(&arguments, &none);
  dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "{sv}", &none);
  dbus_message_iter_close_container(&arguments, &none);
  const dbus_int32_t usualTime = -1;
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_INT32, &usualTime);
}

}  // namespace

NotifiedMessages::NotifiedMessages(Workers& workers, std::string sessionBus, const Text& programName)
    : workers_(workers),
      sessionBus_(std::move(sessionBus)),
      programName_(programName),
      startersErrors_(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {}

void NotifiedMessages::tell(const Text& title, const Text& sentence) {
  workers_.detach([this, heading = plain(title), body = plain(sentence)] {
    if (notify(heading, body) || !startersErrors_) return;
    const std::string line = Log::escapedForLog(heading).bytes() + ": " +
                             Log::escapedForLog(body.replacing("\n", " ")).bytes() + "\n";
    // Nobody may be reading; then there is nobody to tell.
    static_cast<void>(::write(startersErrors_.get(), line.data(), line.size()) == 0);
  });
}

bool NotifiedMessages::notify(const Text& title, const Text& sentence) const {
  const auto bus = BusConnection::open(sessionBus_, kPatience);
  if (!bus) return false;
  const BusMessage message = methodCall(kNotify);
  const std::string program = programName_.bytes();
  const std::string heading = title.bytes();
  const std::string body = withoutMarkup(sentence);
  const char* const texts[] = {program.c_str(), "dialog-error", heading.c_str(), body.c_str()};
  const dbus_uint32_t noOther = 0;
  DBusMessageIter arguments;
  dbus_message_iter_init_append(message.get(), &arguments);
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &texts[0]);
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_UINT32, &noOther);
  for (int i = 1; i < 4; ++i) dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &texts[i]);
  appendHints(arguments);
  return std::holds_alternative<BusMessage>(bus->call(message, kPatience));
}

}  // namespace halvorn
