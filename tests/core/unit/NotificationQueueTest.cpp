#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTCompatibility.h"
#include "tests/fakes/FakeMainThread.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;

class NotificationQueueTest : public testing::Test {
 protected:
  Notifications::Handler note(const std::string& who) {
    return [this, who](const Notification& notification) {
      heard.push_back(who + " " + notification.text("change").value_or("-").bytes());
    };
  }
  void post(const char* name, const std::string& change, std::shared_ptr<const void> object = nullptr) {
    queue->enqueueWhenIdle({name, std::move(object), {{"change", Text(change)}}});
  }

  FakeMainThread mainThread;
  std::unique_ptr<NotificationQueue> queue = std::make_unique<NotificationQueue>(mainThread);
  Strings heard;
};

TEST_F(NotificationQueueTest, NothingIsPostedBeforeTheProgramIsIdle) {
  const auto observation = queue->addObserver("Change", nullptr, note("a"));
  post("Change", "1");
  EXPECT_TRUE(heard.empty());
  mainThread.becomeIdle();
  EXPECT_EQ(heard, Strings{"a 1"});
}

TEST_F(NotificationQueueTest, AlikeNotificationsAreAllPostedInOrder) {
  const auto observation = queue->addObserver("Change", nullptr, note("a"));
  post("Change", "1");
  post("Change", "1");
  post("Change", "2");
  mainThread.becomeIdle();
  EXPECT_EQ(heard, (Strings{"a 1", "a 1", "a 2"}));
}

TEST_F(NotificationQueueTest, ObserversHearTheirNameAndTheirObjectOnly) {
  const auto object = std::make_shared<int>(1);
  const auto other = std::make_shared<int>(2);
  const auto any = queue->addObserver("Change", nullptr, note("any"));
  const auto one = queue->addObserver("Change", object.get(), note("one"));
  const auto named = queue->addObserver("Other", nullptr, note("named"));
  post("Change", "1", object);
  post("Change", "2", other);
  post("Other", "3");
  mainThread.becomeIdle();
  EXPECT_EQ(heard, (Strings{"any 1", "one 1", "any 2", "named 3"}));
}

TEST_F(NotificationQueueTest, ObserversThatComeWhileItWaitsHearOfItThoseThatGoDoNot) {
  auto gone = queue->addObserver("Change", nullptr, note("gone"));
  post("Change", "1");
  gone = nullptr;
  const auto late = queue->addObserver("Change", nullptr, note("late"));
  mainThread.becomeIdle();
  EXPECT_EQ(heard, Strings{"late 1"});
}

TEST_F(NotificationQueueTest, AHandlerMayEndItsOwnAndOtherObservations) {
  std::unique_ptr<Notifications::Observation> own;
  std::unique_ptr<Notifications::Observation> other;
  own = queue->addObserver("Change", nullptr, [&](const Notification&) {
    heard.emplace_back("own");
    own = nullptr;
    other = nullptr;
  });
  other = queue->addObserver("Change", nullptr, note("other"));
  post("Change", "1");
  post("Change", "2");
  mainThread.becomeIdle();
  EXPECT_EQ(heard, Strings{"own"});
}

TEST_F(NotificationQueueTest, WhatAHandlerPostsComesInALaterIdleMoment) {
  const auto observation = queue->addObserver("Change", nullptr, [&](const Notification& notification) {
    heard.push_back(notification.text("change")->bytes());
    if (heard.size() == 1) post("Change", "again");
    EXPECT_LE(heard.size(), 2u);
  });
  post("Change", "1");
  mainThread.becomeIdle();
  EXPECT_EQ(heard, (Strings{"1", "again"}));
}

TEST_F(NotificationQueueTest, TheObjectLivesUntilTheNotificationIsThrough) {
  auto object = std::make_shared<int>(1);
  const std::weak_ptr<int> watched = object;
  post("Change", "1", std::move(object));
  EXPECT_FALSE(watched.expired());
  mainThread.becomeIdle();
  EXPECT_TRUE(watched.expired());
}

TEST_F(NotificationQueueTest, ADestroyedQueuePostsNothingAndObservationsMayOutliveIt) {
  const auto observation = queue->addObserver("Change", nullptr, note("a"));
  post("Change", "1");
  queue = nullptr;
  mainThread.becomeIdle();
  EXPECT_TRUE(heard.empty());
}

}  // namespace
}  // namespace halvorn
