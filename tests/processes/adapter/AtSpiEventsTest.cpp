#include <gtest/gtest.h>

#include "Platform/processes/linux/atspi/AtSpiEvents.h"

namespace halvorn {
namespace {

TEST(AtSpiEvents, EveryKnownNotificationHasItsSignals) {
  const auto focused = eventsForNotification("AXFocusedUIElementChanged", AtSpiToolkit::Qt);
  ASSERT_EQ(focused.size(), 1u);
  EXPECT_EQ(focused[0].registered, "object:state-changed:focused");
  EXPECT_EQ(focused[0].interface, "org.a11y.atspi.Event.Object");
  EXPECT_EQ(focused[0].member, "StateChanged");
  EXPECT_EQ(focused[0].detail, "focused");
  EXPECT_EQ(focused[0].number, 1);
  EXPECT_EQ(eventsForNotification("AXWindowCreated", AtSpiToolkit::Gtk)[0].interface,
            "org.a11y.atspi.Event.Window");
  EXPECT_EQ(eventsForNotification("AXValueChanged", AtSpiToolkit::Other).size(), 4u);
  for (const AtSpiToolkit toolkit : {AtSpiToolkit::Qt, AtSpiToolkit::Gtk, AtSpiToolkit::Other}) {
    EXPECT_TRUE(eventsForNotification("AXNonsense", toolkit).empty());
    EXPECT_TRUE(eventsForNotification("AXWindowMoved", toolkit).empty());
    EXPECT_TRUE(eventsForNotification("", toolkit).empty());
  }
  EXPECT_TRUE(eventsForNotification("AXWindowCreated", AtSpiToolkit::Qt).empty());
  EXPECT_EQ(eventsForNotification("AXWindowCreated", AtSpiToolkit::Other).size(), 1u);
  EXPECT_EQ(toolkitNamed("Qt"), AtSpiToolkit::Qt);
  EXPECT_EQ(toolkitNamed("gtk"), AtSpiToolkit::Gtk);
  EXPECT_EQ(toolkitNamed("GTK"), AtSpiToolkit::Other);
}

}  // namespace
}  // namespace halvorn
