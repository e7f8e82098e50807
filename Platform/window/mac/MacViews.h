// The outlets of the window as AppKit's controls. For sources in Objective-C++ alone.
#pragma once

#include "Platform/window/mac/ControlClasses.h"
#include "Platform/window/mac/MacView.h"

namespace halvorn {

// Texts are kept beside the controls, of which not every system shows every text.
class MacTextField : public TextField, public MacView {
 public:
  MacTextField(KTTextField* field, PlacesAgain placesAgain)
      : MacView(field, std::move(placesAgain)), field_(field) {}
  [[nodiscard]] Text stringValue() const override { return text_; }
  void setStringValue(const Text& text) override;
  void setTextColor(const ColorPointer& color) override;

 private:
  KTTextField* const field_;
  Text text_;
};

class MacButton : public Button, public MacView {
 public:
  MacButton(NSButton* button, PlacesAgain placesAgain)
      : MacView(button, std::move(placesAgain)), button_(button) {}
  [[nodiscard]] Text title() const override { return title_; }
  void setTitle(const Text& title) override;
  void setDescription(const Text& description) override;
  [[nodiscard]] Enabled isEnabled() const override;
  void setEnabled(Enabled enabled) override;

 private:
  NSButton* const button_;
  Text title_;
};

class MacImageView : public ImageView, public MacView {
 public:
  MacImageView(NSImageView* view, PlacesAgain placesAgain)
      : MacView(view, std::move(placesAgain)), view_(view) {}
  void setImage(const ImagePointer& image) override;

 private:
  NSImageView* const view_;
};

class MacTextView : public TextView, public MacView {
 public:
  // The view that is hidden is the one it scrolls in.
  MacTextView(NSScrollView* holder, KTDocumentView* document, PlacesAgain placesAgain)
      : MacView(holder, std::move(placesAgain)), document_(document) {}
  bool setDocumentFromFile(const Text& path) override;
  void setBackgroundColor(const ColorPointer& color) override;
  void setTextColor(const ColorPointer& color) override;

 private:
  KTDocumentView* const document_;
};

class MacTabView : public TabView, public MacView {
 public:
  MacTabView(NSTabView* view, PlacesAgain placesAgain) : MacView(view, std::move(placesAgain)), view_(view) {}
  void showWithoutTabsAndBorder() override;
  void selectItem(int index) override;
  [[nodiscard]] int selectedItem() const override;

 private:
  NSTabView* const view_;
};

class MacProgressIndicator : public ProgressIndicator, public MacView {
 public:
  MacProgressIndicator(NSProgressIndicator* view, PlacesAgain placesAgain)
      : MacView(view, std::move(placesAgain)), view_(view) {}
  void setProgress(const std::optional<Progress>& progress) override;
  void startAnimation() override;
  void stopAnimation() override;
  // Some systems hide the view by themselves while it does not turn: that is no answer to who asks.
  void setHidden(Hidden hidden) override;
  [[nodiscard]] Hidden isHidden() const override { return hidden_; }

 private:
  NSProgressIndicator* const view_;
  Hidden hidden_ = Hidden::No;
};

class MacWindow : public Window {
 public:
  MacWindow(NSWindow* window, std::function<void()> shown) : window_(window), shown_(std::move(shown)) {}
  [[nodiscard]] Text title() const override { return title_; }
  void setTitle(const Text& title) override;
  void center() override;
  void makeKeyAndOrderFront() override;
  void orderFrontRegardless() override;
  void makeMain() override;
  [[nodiscard]] bool isKeyWindow() const override;
  [[nodiscard]] bool isMiniaturizeEnabled() const override;

 private:
  NSWindow* const window_;
  const std::function<void()> shown_;
  Text title_;
};

}  // namespace halvorn
