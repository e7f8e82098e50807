// An installer window without a desktop: every outlet keeps its state in public members, and everything that
// is asked of the window, the application, the alerts, the images and the screen reader is recorded.
//
//   FakeWindow window;                                   // stateful outlets with the texts of a fresh window
//   controller.selectTab(1);
//   EXPECT_EQ(window.installButton.title_, "Install");
//   EXPECT_EQ(window.calls.back(), "installButton.setTitle Install");
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/window/Alerts.h"
#include "Platform/window/Application.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"
#include "Platform/window/Notices.h"
#include "Platform/window/ScreenReader.h"

namespace halvorn {

// What the fakes of one test were asked, in order: "installButton.setTitle Install".
using Calls = std::vector<std::string>;

class FakeImage : public Image {
 public:
  explicit FakeImage(std::string imageName) : name(std::move(imageName)) {}
  std::string name;
};

// "none" for no image.
inline std::string nameOf(const ImagePointer& image) {
  const auto* fake = dynamic_cast<const FakeImage*>(image.get());
  return fake != nullptr ? fake->name : "none";
}

class FakeView : public virtual View {
 public:
  FakeView(Calls& calls, std::string name) : calls_(calls), name_(std::move(name)) {}

  void setHidden(Hidden hidden) override {
    hidden_ = hidden;
    record("setHidden", hidden == Hidden::Yes ? "YES" : "NO");
  }
  Hidden isHidden() const override { return hidden_; }
  void setAppearance(AppearanceName name) override {
    appearance_ = name;
    record("setAppearance", name == AppearanceName::Aqua       ? "Aqua"
                            : name == AppearanceName::DarkAqua ? "DarkAqua"
                                                               : "Inherited");
  }
  AppearanceName appearance() const override { return appearance_; }

  // Nothing holds the outlets; views that hold each other are in FakeScrollView.h.
  std::shared_ptr<View> superview() override { return nullptr; }
  void removeFromSuperviewWithoutNeedingDisplay() override {
    record("removeFromSuperviewWithoutNeedingDisplay");
  }
  void addSubview(View&, ViewPosition, View*) override { record("addSubview"); }
  std::shared_ptr<ScrollView> enclosingScrollView() override { return nullptr; }
  Rect visibleRect() const override { return {}; }
  bool scrollRectToVisible(const Rect&) override { return false; }

  [[nodiscard]] bool visible() const { return hidden_ == Hidden::No; }

  Hidden hidden_ = Hidden::No;
  AppearanceName appearance_ = AppearanceName::Inherited;

 protected:
  void record(const std::string& what, const std::string& detail = "") {
    calls_.push_back(name_ + "." + what + (detail.empty() ? "" : " " + detail));
  }

 private:
  Calls& calls_;
  std::string name_;
};

class FakeTextField : public FakeView, public TextField {
 public:
  FakeTextField(Calls& calls, std::string name, Text text) : FakeView(calls, std::move(name)), text_(text) {}
  Text stringValue() const override { return text_; }
  void setStringValue(const Text& text) override {
    text_ = text;
    record("setStringValue", text.bytes());
  }
  void setTextColor(const ColorPointer& color) override {
    textColor_ = color;
    record("setTextColor");
  }
  Text text_;
  ColorPointer textColor_;
};

class FakeButton : public FakeView, public Button {
 public:
  FakeButton(Calls& calls, std::string name, Text title) : FakeView(calls, std::move(name)), title_(title) {}
  Text title() const override { return title_; }
  void setTitle(const Text& title) override {
    title_ = title;
    record("setTitle", title.bytes());
  }
  void setDescription(const Text& description) override { description_ = description; }
  Enabled isEnabled() const override { return enabled_; }
  void setEnabled(Enabled enabled) override {
    enabled_ = enabled;
    record("setEnabled", enabled == Enabled::Yes ? "YES" : "NO");
  }
  // A click as a person makes it: nothing happens on a button that is disabled or hidden.
  void click() {
    if (enabled_ == Enabled::Yes && visible() && onClick) onClick();
  }
  Text title_;
  Text description_;
  Enabled enabled_ = Enabled::Yes;
  std::function<void()> onClick;
};

class FakeImageView : public FakeView, public ImageView {
 public:
  using FakeView::FakeView;
  void setImage(const ImagePointer& image) override {
    image_ = image;
    record("setImage", nameOf(image));
  }
  ImagePointer image_;
};

class FakeTextView : public FakeView, public TextView {
 public:
  using FakeView::FakeView;
  bool setDocumentFromFile(const Text& path) override {
    document_ = path;
    record("setDocumentFromFile", path.bytes());
    return readable_;
  }
  void setBackgroundColor(const ColorPointer& color) override {
    backgroundColor_ = color;
    record("setBackgroundColor");
  }
  void setTextColor(const ColorPointer& color) override {
    textColor_ = color;
    record("setTextColor");
  }
  OptionalText document_;
  ColorPointer backgroundColor_;
  ColorPointer textColor_;
  bool readable_ = true;
};

class FakeTabView : public FakeView, public TabView {
 public:
  using FakeView::FakeView;
  void showWithoutTabsAndBorder() override {
    tabsAndBorder_ = false;
    record("showWithoutTabsAndBorder");
  }
  void selectItem(int index) override {
    if (index == 0 || index == 1) selected_ = index;  // there are no other pages
    record("selectItem", std::to_string(index));
  }
  int selectedItem() const override { return selected_; }
  bool tabsAndBorder_ = true;
  int selected_ = 0;
};

class FakeProgressIndicator : public FakeView, public ProgressIndicator {
 public:
  using FakeView::FakeView;
  void startAnimation() override {
    animating_ = true;
    record("startAnimation");
  }
  void stopAnimation() override {
    animating_ = false;
    record("stopAnimation");
  }
  void setProgress(const std::optional<Progress>& progress) override { progress_ = progress; }
  bool animating_ = false;
  std::optional<Progress> progress_;
};

class FakePlainWindow : public Window {
 public:
  FakePlainWindow(Calls& calls, Text title) : title_(title), calls_(calls) {}
  Text title() const override { return title_; }
  void setTitle(const Text& title) override {
    title_ = title;
    calls_.push_back("window.setTitle " + title.bytes());
  }
  void center() override { calls_.push_back("window.center"); }
  void makeKeyAndOrderFront() override {
    visible_ = true;
    calls_.push_back("window.makeKeyAndOrderFront");
  }
  void orderFrontRegardless() override {
    visible_ = true;
    calls_.push_back("window.orderFrontRegardless");
  }
  void makeMain() override { calls_.push_back("window.makeMain"); }
  bool isKeyWindow() const override { return isKey_; }
  bool isMiniaturizeEnabled() const override {
    calls_.push_back("window.isMiniaturizeEnabled");
    return true;
  }
  Text title_;
  bool visible_ = false;
  bool isKey_ = true;

 private:
  Calls& calls_;
};

// The whole window with the texts of the interface description.
class FakeWindow {
 public:
  FakeWindow() { checkmarkField.hidden_ = Hidden::Yes; }
  FakeWindow(const FakeWindow&) = delete;
  FakeWindow& operator=(const FakeWindow&) = delete;

  [[nodiscard]] InstallerOutlets outlets() {
    return {window,           tabView,      nameField,  introField,       pathField,
            explanationField, messageField, iconField,  checkmarkField,   readMeTextView,
            installButton,    cancelButton, helpButton, progressIndicator};
  }

  Calls calls;
  FakePlainWindow window{calls, "Install %@"};
  FakeTabView tabView{calls, "tabView"};
  FakeTextField nameField{calls, "nameField", ""};
  FakeTextField introField{calls, "introField", "This program will install %@ on your computer."};
  FakeTextField pathField{calls, "pathField", ""};
  FakeTextField explanationField{
      calls, "explanationField",
      "If %@ is running, it will be asked to quit. An older version will be moved to the Trash."};
  FakeTextField messageField{calls, "messageField", ""};
  FakeImageView iconField{calls, "iconField"};
  FakeImageView checkmarkField{calls, "checkmarkField"};
  FakeTextView readMeTextView{calls, "readMeTextView"};
  FakeButton installButton{calls, "installButton", "Install"};
  FakeButton cancelButton{calls, "cancelButton", "Cancel"};
  FakeButton helpButton{calls, "helpButton", "?"};
  FakeProgressIndicator progressIndicator{calls, "progressIndicator"};
};

class FakeHostApplication : public Application {
 public:
  void terminate() override { ++terminations; }
  void setApplicationIcon(const ImagePointer& image) override { icon = image; }
  void performWhenShown(std::function<void()> task) override { whenShown.push_back(std::move(task)); }
  void requestUserAttention() override { ++requestsForAttention; }
  void setProgress(std::optional<double> share) override { progress = share; }
  void beep() override { ++beeps; }
  bool currentEventHasOptionKey() const override { return optionKey; }
  // The first window has been painted.
  void show() {
    for (const auto& task : std::exchange(whenShown, {})) task();
  }

  int terminations = 0;
  int requestsForAttention = 0;
  std::optional<double> progress;
  int beeps = 0;
  ImagePointer icon;
  std::vector<std::function<void()>> whenShown;
  std::atomic<bool> optionKey = false;
};

class FakeAlerts : public Alerts {
 public:
  void beginSheet(const AlertDescription& alert, std::function<void(int)> ended) override {
    shown.push_back(alert);
    ended_ = std::move(ended);
  }
  [[nodiscard]] bool isUp() const { return ended_ != nullptr; }
  // Ends the sheet that is up as the button would.
  void press(int returnCode) {
    const auto ended = std::exchange(ended_, nullptr);
    if (ended) ended(returnCode);
  }
  // Ends it as Escape or the close button would.
  void dismiss() { press(kAlertFirstButtonReturn); }

  std::vector<AlertDescription> shown;

 private:
  std::function<void(int)> ended_;
};

// Knows the pictures it was given; everything asked is recorded.
class FakeImages : public Images {
 public:
  ImagePointer imageFromFile(const Text& path) override {
    calls.push_back("imageFromFile " + path.bytes());
    return find(files, path);
  }
  ImagePointer imageNamed(const Text& name) override {
    calls.push_back("imageNamed " + name.bytes());
    return find(named, name);
  }
  ImagePointer iconForFile(const Text& path) override {
    calls.push_back("iconForFile " + path.bytes());
    return find(icons, path);
  }

  Calls calls;
  std::map<Text, ImagePointer> files;
  std::map<Text, ImagePointer> named = {{"AlertStopIcon", std::make_shared<FakeImage>("AlertStopIcon")}};
  std::map<Text, ImagePointer> icons;

 private:
  static ImagePointer find(const std::map<Text, ImagePointer>& images, const Text& key) {
    const auto found = images.find(key);
    return found != images.end() ? found->second : nullptr;
  }
};

class FakeNotices : public Notices {
 public:
  void show(const Notice& notice) override {
    if (!hasPlace) {
      if (notice.notShown) notice.notShown();
      return;
    }
    shown = notice;
    all.push_back(notice);
  }
  void withdraw() override { shown.reset(); }

  bool hasPlace = true;
  std::optional<Notice> shown;
  std::vector<Notice> all;
};

class FakeScreenReader : public ScreenReader {
 public:
  void announce(const Text& text) override { announced.push_back(text); }
  std::vector<Text> announced;
};

}  // namespace halvorn
