// A program without a desktop: it can only be told to end.
#pragma once

#include "Platform/window/Application.h"

namespace halvorn {

class NullApplication : public Application {
 public:
  void terminate() override { isTerminated_ = true; }
  void setApplicationIcon(const ImagePointer&) override {}
  void performWhenShown(std::function<void()> task) override { task(); }  // no window is on its way
  void beep() override {}
  bool currentEventHasOptionKey() const override { return false; }

  [[nodiscard]] bool isTerminated() const { return isTerminated_; }

 private:
  bool isTerminated_ = false;
};

}  // namespace halvorn
