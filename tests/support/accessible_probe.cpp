// Prints what an assistive program sees of another program, one line for each
// part of its windows, parents first:
//
//   role <tab> name <tab> states <tab> x <tab> y <tab> width <tab> height <tab> text
//
// usage: accessible_probe PID     positions are of the screen, in pixels; states are separated by commas.
// Exit status 0; 1 when there is no accessible program with that pid.
#include <atspi/atspi.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string cleaned(const char* text) {
  std::string result = text ? text : "";
  for (char& character : result) {
    if (character == '\t' || character == '\n' || character == '\r') character = ' ';
  }
  return result;
}

std::string takenString(char* text) {
  std::string result = cleaned(text);
  g_free(text);
  return result;
}

std::string statesOf(AtspiAccessible* part) {
  const struct {
    AtspiStateType state;
    const char* name;
  } known[] = {{ATSPI_STATE_SHOWING, "showing"},    {ATSPI_STATE_ENABLED, "enabled"},
               {ATSPI_STATE_FOCUSED, "focused"},    {ATSPI_STATE_IS_DEFAULT, "default"},
               {ATSPI_STATE_ACTIVE, "active"},      {ATSPI_STATE_BUSY, "busy"},
               {ATSPI_STATE_FOCUSABLE, "focusable"}};
  std::string result;
  AtspiStateSet* states = atspi_accessible_get_state_set(part);
  for (const auto& [state, name] : known) {
    if (!atspi_state_set_contains(states, state)) continue;
    if (!result.empty()) result += ",";
    result += name;
  }
  g_object_unref(states);
  return result;
}

std::string textOf(AtspiAccessible* part) {
  AtspiText* text = atspi_accessible_get_text_iface(part);
  if (!text) return "";
  const int count = atspi_text_get_character_count(text, nullptr);
  std::string result = takenString(atspi_text_get_text(text, 0, count, nullptr));
  g_object_unref(text);
  return result;
}

void print(AtspiAccessible* part, int depth) {
  if (!part || depth > 30) return;
  AtspiRect* area = nullptr;
  if (AtspiComponent* component = atspi_accessible_get_component_iface(part)) {
    area = atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, nullptr);
    g_object_unref(component);
  }
  const AtspiRect none = {0, 0, 0, 0};
  const AtspiRect& at = area ? *area : none;
  std::printf("%s\t%s\t%s\t%d\t%d\t%d\t%d\t%s\n",
              takenString(atspi_accessible_get_role_name(part, nullptr)).c_str(),
              takenString(atspi_accessible_get_name(part, nullptr)).c_str(), statesOf(part).c_str(), at.x,
              at.y, at.width, at.height, textOf(part).c_str());
  if (area) g_free(area);
  const int count = atspi_accessible_get_child_count(part, nullptr);
  for (int i = 0; i < count; ++i) {
    AtspiAccessible* child = atspi_accessible_get_child_at_index(part, i, nullptr);
    print(child, depth + 1);
    if (child) g_object_unref(child);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 64;
  const auto pid = static_cast<guint>(std::atoi(argv[1]));
  atspi_init();
  AtspiAccessible* desktop = atspi_get_desktop(0);
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  bool isFound = false;
  for (int i = 0; i < count; ++i) {
    AtspiAccessible* application = atspi_accessible_get_child_at_index(desktop, i, nullptr);
    if (!application) continue;
    if (atspi_accessible_get_process_id(application, nullptr) == pid) {
      isFound = true;
      print(application, 0);
    }
    g_object_unref(application);
  }
  return isFound ? 0 : 1;
}
