// Applications whose user interface a test moves.
#pragma once

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/processes/Accessibility.h"

namespace halvorn {

class FakeAccessibilityElement : public AccessibilityElement {
 public:
  explicit FakeAccessibilityElement(const Text& name) : name_(name) {}
  Text reference() const override { return name_; }

 private:
  Text name_;
};

class FakeAccessibility : public Accessibility {
 public:
  // Which calls fail.
  bool elementFails = false;
  bool observerFails = false;
  std::set<Text> unknownNotifications;

  AccessibilityElementPointer createApplicationElement(ProcessSerialNumber number) override {
    if (elementFails) return nullptr;
    ++elementsMade;
    return std::make_shared<FakeAccessibilityElement>(Text("application ") +
                                                      Text(std::to_string(number.low)));
  }
  std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber, Callback callback) override {
    if (observerFails) return nullptr;
    return std::make_unique<Observer>(*this, std::move(callback));
  }

  // Something happens in every observed application that asked for it.
  void happen(const Text& notification, const AccessibilityElementPointer& element) {
    for (const Watching& observer : observers) {
      if (observer.isInRunLoop && observer.added.contains(notification))
        observer.callback(element, notification);
    }
  }

  struct Watching {
    const void* id = nullptr;
    Callback callback;
    bool isInRunLoop = false;
    std::set<Text> added;
  };
  std::vector<Watching> observers;  // that exist
  // What became of observers, in order: "in the run loop", "out of the run loop", "gone".
  std::vector<std::string> fates;
  int elementsMade = 0;

 private:
  class Observer : public AccessibilityObserver {
   public:
    Observer(FakeAccessibility& owner, Callback callback) : owner_(owner) {
      owner_.observers.push_back({this, std::move(callback), false, {}});
    }
    ~Observer() override {
      std::erase_if(owner_.observers, [this](const Watching& entry) { return entry.id == this; });
      owner_.fates.emplace_back("gone");
    }
    void addToRunLoop() override {
      own().isInRunLoop = true;
      owner_.fates.emplace_back("in the run loop");
    }
    void removeFromRunLoop() override {
      own().isInRunLoop = false;
      owner_.fates.emplace_back("out of the run loop");
    }
    bool add(const AccessibilityElement&, const Text& notification) override {
      if (owner_.unknownNotifications.contains(notification)) return false;
      own().added.insert(notification);
      return true;
    }
    void remove(const AccessibilityElement&, const Text& notification) override {
      own().added.erase(notification);
    }

   private:
    Watching& own() {
      for (Watching& entry : owner_.observers) {
        if (entry.id == this) return entry;
      }
      std::abort();
    }
    FakeAccessibility& owner_;
  };
};

}  // namespace halvorn
