// Made-up applications, the process class over them, and the changes it posts.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTProcess.h"
#include "tests/fakes/FakeProcesses.h"

namespace halvorn {

using Strings = std::vector<std::string>;

class KTProcessFixture : public testing::Test {
 protected:
  FakeApplication& start(const char* name, const char (&code)[5] = "EDIT") {
    return fake.applications.start({.name = name, .signature = fourCharCode(code)});
  }
  KTProcessPointer object(const FakeApplication& application) {
    return processes.processWithSerialNumber(application.number);
  }
  // The changes posted so far, once observers have heard of them.
  Strings changes() {
    fake.mainThread.becomeIdle();
    return changes_;
  }

  FakeProcesses fake;
  FakeApplications& applications = fake.applications;
  KTProcessClass& processes = fake.processes;

 private:
  Strings changes_;
  std::unique_ptr<Notifications::Observation> observation_ = fake.notifications.addObserver(
      KTProcessChangeNotification, &fake.processes,
      [this](const Notification& notification) { changes_.push_back(notification.text("change")->bytes()); });
};

}  // namespace halvorn
