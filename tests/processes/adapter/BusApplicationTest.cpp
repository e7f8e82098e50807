#include <gtest/gtest.h>

#include "Platform/processes/linux/dbus/BusApplication.h"

namespace halvorn {
namespace {

TEST(ObjectPaths, AreMadeOfBusNames) {
  EXPECT_EQ(objectPathFor("org.example.My-App"), "/org/example/My_App");
}

}  // namespace
}  // namespace halvorn
