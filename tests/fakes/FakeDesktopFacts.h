// The desktop's facts as a test sets them.
#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "Platform/color/ControlTint.h"
#include "Platform/color/InterfaceStyleSetting.h"
#include "Platform/files/Aliases.h"
#include "Platform/files/FileSystemInfo.h"
#include "Platform/processes/LaunchContext.h"
#include "Platform/session/Debugger.h"
#include "Platform/session/IdleTime.h"
#include "Platform/session/MenuBar.h"
#include "Platform/session/Pasteboard.h"
#include "Platform/window/Images.h"

namespace halvorn {

class FakePasteboard : public Pasteboard {
 public:
  std::int64_t changeCount() override { return count; }
  void change() { ++count; }

  std::int64_t count = 7;
};

class FakeMenuBar : public MenuBar {
 public:
  bool installHandler(Handler newHandler) override {
    ++installations;
    if (!canBeWatched) return false;
    handler = std::move(newHandler);
    return true;
  }
  void hide() { (void)handler({menuEventClass, menuBarHiddenEvent}); }
  void show() { (void)handler({menuEventClass, menuBarShownEvent}); }

  bool canBeWatched = true;
  int installations = 0;
  Handler handler;
};

class FakeIdleTime : public IdleTime {
 public:
  std::optional<std::int64_t> nanosecondsSinceLastInput() override { return nanoseconds; }
  std::optional<std::int64_t> nanoseconds;
};

class FakeInterfaceStyleSetting : public InterfaceStyleSetting {
 public:
  OptionalText current() override { return style; }
  void installChangeHandler(std::function<void()> newHandler) override {
    ++installations;
    handler = std::move(newHandler);
  }
  void change(const OptionalText& newStyle) {
    style = newStyle;
    if (handler) handler();
  }

  OptionalText style;
  int installations = 0;
  std::function<void()> handler;
};

class FakeFileSystemInfo : public FileSystemInfo {
 public:
  FileSystemAnswer statusOf(const Text& path) const override {
    const auto found = types.find(path);
    if (found == types.end()) return {-1, ""};
    return {0, found->second};
  }
  std::map<Text, Text> types;  // path -> type name
};

class FakeControlTint : public ControlTint {
 public:
  int current() const override { return tint; }
  int tint = blueControlTint;
};

class FakeDebugger : public Debugger {
 public:
  bool isAttached() const override { return attached; }
  bool attached = false;
};

// Images that remember their name.
class NamedImages : public Images {
 public:
  struct NamedImage : Image {
    Text name;
  };
  ImagePointer imageFromFile(const Text&) override { return nullptr; }
  ImagePointer imageNamed(const Text& name) override {
    asked.push_back(name);
    if (!exist) return nullptr;
    const auto image = std::make_shared<NamedImage>();
    image->name = name;
    return image;
  }
  ImagePointer iconForFile(const Text&) override { return nullptr; }

  bool exist = true;
  std::vector<Text> asked;
};

class FakeAliases : public Aliases {
 public:
  OptionalText targetOf(const Text& path) const override {
    const auto found = targets.find(path);
    return found == targets.end() ? std::nullopt : OptionalText(found->second);
  }
  std::map<Text, Text> targets;  // path -> where it leads in the end
};

class FakeLaunchContext : public LaunchContext {
 public:
  std::optional<PropertyDictionary> launcherInformation() const override { return launcher; }
  std::optional<PropertyDictionary> launcher;
};

}  // namespace halvorn
