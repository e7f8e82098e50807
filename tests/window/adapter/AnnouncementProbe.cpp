// Prints what comes into view in accessible programs, as a screen reader hears of it, a line each:
//
//   role <tab> name
//
// Says "listening" first. Ends when its input does.
#include <atspi/atspi.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

void heard(AtspiEvent* event, void*) {
  if (event->detail1 == 1 && event->source != nullptr) {
    char* role = atspi_accessible_get_role_name(event->source, nullptr);
    char* name = atspi_accessible_get_name(event->source, nullptr);
    std::printf("%s\t%s\n", role != nullptr ? role : "", name != nullptr ? name : "");
    std::fflush(stdout);
    g_free(role);
    g_free(name);
  }
  g_boxed_free(ATSPI_TYPE_EVENT, event);
}

gboolean inputCame(GIOChannel* channel, GIOCondition, void*) {
  char byte = 0;
  if (::read(g_io_channel_unix_get_fd(channel), &byte, 1) > 0) return TRUE;
  atspi_event_quit();
  return FALSE;
}

}  // namespace

int main() {
  if (atspi_init() > 1) return 1;
  AtspiEventListener* listener = atspi_event_listener_new(heard, nullptr, nullptr);
  if (atspi_event_listener_register(listener, "object:state-changed:showing", nullptr) == 0) return 1;
  GIOChannel* input = g_io_channel_unix_new(STDIN_FILENO);
  g_io_add_watch(input, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), inputCame, nullptr);
  std::puts("listening");
  std::fflush(stdout);
  atspi_event_main();
  g_io_channel_unref(input);
  g_object_unref(listener);
  // At once: what the library keeps of other programs it never gives back, and
  // nobody asks this program for it.
  std::_Exit(0);
}
