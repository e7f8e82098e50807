// The installer's window where there is none: its outlets keep what they are told, and nobody presses a button.
// Thread: main.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "Platform/window/null/NullWindow.h"

namespace halvorn {

class TerminalField : public NullTextField {
 public:
  Text stringValue() const override { return value_; }
  void setStringValue(const Text& text) override { value_ = text; }

 private:
  Text value_;
};

class TerminalTabs : public NullTabView {
 public:
  void selectItem(int index) override { index_ = index; }
  int selectedItem() const override { return index_; }

 private:
  int index_ = 0;
};

class TerminalProgress : public NullProgressIndicator {
 public:
  void startAnimation() override { turn(true); }
  void stopAnimation() override { turn(false); }
  std::function<void(bool isTurning)> turned;

 private:
  void turn(bool isTurning) {
    if (turned) turned(isTurning);
  }
};

class TerminalTitle : public NullWindow {
 public:
  Text title() const override { return title_; }
  void setTitle(const Text& title) override { title_ = title; }

 private:
  Text title_;
};

// A program without windows: what waits for one to be shown is not done.
class TerminalApplication : public Application {
 public:
  explicit TerminalApplication(bool hasOptionKey) : hasOptionKey_(hasOptionKey) {}
  void terminate() override {}
  void setApplicationIcon(const ImagePointer&) override {}
  void performWhenShown(std::function<void()>) override {}
  void requestUserAttention() override {}
  void setProgress(std::optional<double>) override {}
  void beep() override {}
  bool currentEventHasOptionKey() const override { return hasOptionKey_; }

 private:
  bool hasOptionKey_;
};

// Keeps the alert; nobody answers it.
class TerminalAlerts : public Alerts {
 public:
  void beginSheet(const AlertDescription& alert, std::function<void(int)>) override { shown = alert; }
  std::optional<AlertDescription> shown;
};

struct TerminalFace {
  // With the texts of the window's description.
  explicit TerminalFace(std::map<std::string, Text> texts);
  [[nodiscard]] InstallerOutlets outlets();

  TerminalTitle window;
  TerminalTabs tabs;
  TerminalField nameField, introField, pathField, explanationField, messageField;
  NullImageView iconField, checkmarkField;
  NullTextView readMeTextView;
  NullButton installButton, cancelButton, helpButton;
  TerminalProgress progress;
};

}  // namespace halvorn
