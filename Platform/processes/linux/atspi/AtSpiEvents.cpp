#include "Platform/processes/linux/atspi/AtSpiEvents.h"

namespace halvorn {
namespace {

struct Row {
  const char* notification;
  const char* event;
  const char* member;
  const char* detail = "";
  std::optional<std::int32_t> number = std::nullopt;
};

// Windows come and go as objects for toolkits that send no window events.
const Row kRows[] = {
    {"AXApplicationActivated", "window:activate", "Activate"},
    {"AXApplicationDeactivated", "window:deactivate", "Deactivate"},
    {"AXFocusedUIElementChanged", "object:state-changed:focused", "StateChanged", "focused", 1},
    {"AXFocusedWindowChanged", "window:activate", "Activate"},
    {"AXMainWindowChanged", "window:activate", "Activate"},
    {"AXCreated", "object:children-changed:add", "ChildrenChanged", "add"},
    {"AXWindowCreated", "window:create", "Create"},
    {"AXWindowMiniaturized", "window:minimize", "Minimize"},
    {"AXWindowDeminiaturized", "window:restore", "Restore"},
    {"AXWindowMoved", "window:move", "Move"},
    {"AXWindowResized", "window:resize", "Resize"},
    {"AXMoved", "object:bounds-changed", "BoundsChanged"},
    {"AXResized", "object:bounds-changed", "BoundsChanged"},
    {"AXUIElementDestroyed", "object:state-changed:defunct", "StateChanged", "defunct", 1},
    {"AXUIElementDestroyed", "object:children-changed:remove", "ChildrenChanged", "remove"},
    {"AXUIElementDestroyed", "window:destroy", "Destroy"},
    {"AXValueChanged", "object:property-change:accessible-value", "PropertyChange", "accessible-value"},
    {"AXValueChanged", "object:text-changed:insert", "TextChanged", "insert"},
    {"AXValueChanged", "object:text-changed:delete", "TextChanged", "delete"},
    {"AXValueChanged", "object:state-changed:checked", "StateChanged", "checked"},
    {"AXTitleChanged", "object:property-change:accessible-name", "PropertyChange", "accessible-name"},
    {"AXSelectedTextChanged", "object:text-selection-changed", "TextSelectionChanged"},
    {"AXSelectedTextChanged", "object:text-caret-moved", "TextCaretMoved"},
    {"AXSelectedChildrenChanged", "object:selection-changed", "SelectionChanged"},
    {"AXSelectedRowsChanged", "object:selection-changed", "SelectionChanged"},
    {"AXAnnouncementRequested", "object:announcement", "Announcement"},
};

}  // namespace

std::vector<AtSpiEvent> eventsForNotification(const std::string& notification) {
  std::vector<AtSpiEvent> events;
  for (const Row& row : kRows) {
    if (notification != row.notification) continue;
    const std::string registered = row.event;
    const bool isOfWindow = registered.starts_with("window:");
    events.push_back({registered, isOfWindow ? "org.a11y.atspi.Event.Window" : "org.a11y.atspi.Event.Object",
                      row.member, row.detail, row.number});
  }
  return events;
}

}  // namespace halvorn
