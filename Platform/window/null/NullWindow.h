// A program without a screen: views that show nothing and keep nothing, and nobody who sees, hears or presses.
#pragma once

#include "Platform/running/MainThread.h"
#include "Platform/window/Alerts.h"
#include "Platform/window/Application.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"
#include "Platform/window/Notices.h"
#include "Platform/window/ScreenReader.h"

namespace halvorn {

// The program can only be told to end.
class NullApplication : public Application {
 public:
  explicit NullApplication(MainThread& mainThread) : mainThread_(mainThread) {}
  void terminate() override { isTerminated_ = true; }
  void setApplicationIcon(const ImagePointer&) override {}
  void performWhenShown(std::function<void()> task) override;  // at once: no window is on its way
  void requestUserAttention() override {}
  void setProgress(std::optional<double>) override {}
  void beep() override {}
  bool currentEventHasOptionKey() const override { return false; }

  [[nodiscard]] bool isTerminated() const { return isTerminated_; }

 private:
  MainThread& mainThread_;
  bool isTerminated_ = false;
};

// No alert can be shown, so each ends at once as its default button says.
class NullAlerts : public Alerts {
 public:
  explicit NullAlerts(MainThread& mainThread) : mainThread_(mainThread) {}
  void beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) override;

 private:
  MainThread& mainThread_;
};

// No pictures.
class NullImages : public Images {
 public:
  ImagePointer imageFromFile(const Text&) override { return nullptr; }
  ImagePointer imageNamed(const Text&) override { return nullptr; }
  ImagePointer iconForFile(const Text&) override { return nullptr; }
};

// Nobody listens.
class NullScreenReader : public ScreenReader {
 public:
  void announce(const Text&) override {}
};

// Nobody reads.
class NullNotices : public Notices {
 public:
  void show(const Notice& notice) override {
    if (notice.notShown) notice.notShown();
  }
  void withdraw() override {}
};

// Hidden, held by nobody, and never drawn.
class NullView : public virtual View {
 public:
  void setHidden(Hidden) override {}
  Hidden isHidden() const override { return Hidden::Yes; }
  void setAppearance(AppearanceName) override {}
  AppearanceName appearance() const override { return AppearanceName::Inherited; }
  std::shared_ptr<View> superview() override { return nullptr; }
  void removeFromSuperviewWithoutNeedingDisplay() override {}
  void addSubview(View&, ViewPosition, View*) override {}
  std::shared_ptr<ScrollView> enclosingScrollView() override { return nullptr; }
  Rect visibleRect() const override { return {}; }
  bool scrollRectToVisible(const Rect&) override { return false; }
};

class NullTextField : public TextField, public NullView {
 public:
  Text stringValue() const override { return {}; }
  void setStringValue(const Text&) override {}
  void setTextColor(const ColorPointer&) override {}
};

class NullButton : public Button, public NullView {
 public:
  Text title() const override { return {}; }
  void setTitle(const Text&) override {}
  void setDescription(const Text&) override {}
  Enabled isEnabled() const override { return Enabled::No; }
  void setEnabled(Enabled) override {}
};

class NullImageView : public ImageView, public NullView {
 public:
  void setImage(const ImagePointer&) override {}
};

class NullTextView : public TextView, public NullView {
 public:
  bool setDocumentFromFile(const Text&) override { return false; }
  void setBackgroundColor(const ColorPointer&) override {}
  void setTextColor(const ColorPointer&) override {}
};

class NullTabView : public TabView, public NullView {
 public:
  void showWithoutTabsAndBorder() override {}
  void selectItem(int) override {}
  int selectedItem() const override { return 0; }
};

class NullProgressIndicator : public ProgressIndicator, public NullView {
 public:
  void setProgress(const std::optional<Progress>&) override {}
  void startAnimation() override {}
  void stopAnimation() override {}
};

class NullWindow : public Window {
 public:
  Text title() const override { return {}; }
  void setTitle(const Text&) override {}
  void center() override {}
  void makeKeyAndOrderFront() override {}
  void orderFrontRegardless() override {}
  void makeMain() override {}
  bool isKeyWindow() const override { return false; }
  bool isMiniaturizeEnabled() const override { return false; }
};

// One of each for the outlets.
class NullInstallerWindow {
 public:
  [[nodiscard]] InstallerOutlets outlets();

 private:
  NullWindow window_;
  NullTabView tabView_;
  NullTextField field_;
  NullImageView image_;
  NullTextView text_;
  NullButton button_;
  NullProgressIndicator progress_;
};

}  // namespace halvorn
