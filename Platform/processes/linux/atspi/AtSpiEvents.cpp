#include "Platform/processes/linux/atspi/AtSpiEvents.h"

#include <algorithm>

namespace halvorn {
namespace {

enum class SentBy { Qt, Gtk, Both };

struct Row {
  const char* notification;
  SentBy toolkits;
  const char* event;
  const char* member;
  const char* detail = "";
  std::optional<std::int32_t> number = std::nullopt;
};

// Only what a program of the toolkit was seen to send by itself. Left out because neither does: windows that
// are moved or resized (their elements are, in GTK), announcements; in Qt everything about windows but which
// one is active, and every element made, moved or destroyed. A title is any element's name; a window of Qt
// tells nothing of its own.
const Row kRows[] = {
    {"AXApplicationActivated", SentBy::Both, "window:activate", "Activate"},
    {"AXApplicationDeactivated", SentBy::Both, "window:deactivate", "Deactivate"},
    {"AXFocusedUIElementChanged", SentBy::Both, "object:state-changed:focused", "StateChanged", "focused", 1},
    {"AXFocusedWindowChanged", SentBy::Both, "window:activate", "Activate"},
    {"AXMainWindowChanged", SentBy::Both, "window:activate", "Activate"},
    {"AXCreated", SentBy::Gtk, "object:children-changed:add", "ChildrenChanged", "add"},
    {"AXWindowCreated", SentBy::Gtk, "window:create", "Create"},
    {"AXWindowMiniaturized", SentBy::Gtk, "object:state-changed:iconified", "StateChanged", "iconified", 1},
    // A window that is new says this too.
    {"AXWindowDeminiaturized", SentBy::Gtk, "object:state-changed:iconified", "StateChanged", "iconified", 0},
    // It is not told which of the two it was.
    {"AXMoved", SentBy::Gtk, "object:bounds-changed", "BoundsChanged"},
    {"AXResized", SentBy::Gtk, "object:bounds-changed", "BoundsChanged"},
    {"AXUIElementDestroyed", SentBy::Gtk, "object:state-changed:defunct", "StateChanged", "defunct", 1},
    {"AXValueChanged", SentBy::Both, "object:property-change:accessible-value", "PropertyChange",
     "accessible-value"},
    {"AXValueChanged", SentBy::Both, "object:text-changed:insert", "TextChanged", "insert"},
    {"AXValueChanged", SentBy::Both, "object:text-changed:delete", "TextChanged", "delete"},
    {"AXValueChanged", SentBy::Both, "object:state-changed:checked", "StateChanged", "checked"},
    {"AXTitleChanged", SentBy::Both, "object:property-change:accessible-name", "PropertyChange",
     "accessible-name"},
    {"AXSelectedTextChanged", SentBy::Both, "object:text-selection-changed", "TextSelectionChanged"},
    {"AXSelectedTextChanged", SentBy::Both, "object:text-caret-moved", "TextCaretMoved"},
    // Of a list or table: in Qt the row itself tells.
    {"AXSelectedChildrenChanged", SentBy::Both, "object:selection-changed", "SelectionChanged"},
    {"AXSelectedChildrenChanged", SentBy::Qt, "object:state-changed:selected", "StateChanged", "selected", 1},
    {"AXSelectedRowsChanged", SentBy::Both, "object:selection-changed", "SelectionChanged"},
    {"AXSelectedRowsChanged", SentBy::Qt, "object:state-changed:selected", "StateChanged", "selected", 1},
};

bool isSentBy(const Row& row, AtSpiToolkit toolkit) {
  if (row.toolkits == SentBy::Both || toolkit == AtSpiToolkit::Other) return true;
  return toolkit == (row.toolkits == SentBy::Qt ? AtSpiToolkit::Qt : AtSpiToolkit::Gtk);
}

}  // namespace

AtSpiToolkit toolkitNamed(const std::string& name) {
  if (name == "Qt") return AtSpiToolkit::Qt;
  // "GTK" is the next generation, which sends by other means.
  return name == "gtk" ? AtSpiToolkit::Gtk : AtSpiToolkit::Other;
}

std::vector<AtSpiEvent> eventsForNotification(const std::string& notification, AtSpiToolkit toolkit) {
  std::vector<AtSpiEvent> events;
  for (const Row& row : kRows) {
    if (notification != row.notification || !isSentBy(row, toolkit)) continue;
    const std::string registered = row.event;
    const bool isOfWindow = registered.starts_with("window:");
    events.push_back({registered, isOfWindow ? "org.a11y.atspi.Event.Window" : "org.a11y.atspi.Event.Object",
                      row.member, row.detail, row.number});
  }
  return events;
}

std::vector<std::string> notificationsOf(AtSpiToolkit toolkit) {
  std::vector<std::string> names;
  for (const Row& row : kRows) {
    const bool isNew = std::find(names.begin(), names.end(), row.notification) == names.end();
    if (isNew && isSentBy(row, toolkit)) names.emplace_back(row.notification);
  }
  return names;
}

}  // namespace halvorn
