// The outlets over the toolkit's widgets.
//
// Thread: main, all of them. The widgets belong to the window and outlive their outlets.
#pragma once

#include <QTabWidget>

#include "Platform/window/Views.h"
#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/QtWidgetView.h"
#include "Platform/window/linux/Spinner.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/PictureLabel.h"
#include "Platform/window/linux/readme/DocumentView.h"

namespace halvorn {

class QtView : public QtWidgetView {
 public:
  QtView(WindowWidget& window, QWidget& widget);
  void setHidden(Hidden hidden) override;
  Hidden isHidden() const override { return hidden_; }

 protected:
  WindowWidget& window_;

 private:
  QWidget& widget_;
  Hidden hidden_;
};

class QtTextField : public QtView, public TextField {
 public:
  QtTextField(WindowWidget& window, FieldLabel& label);
  Text stringValue() const override { return text_; }
  void setStringValue(const Text& text) override;
  void setTextColor(const ColorPointer& color) override { label_.setTextColor(color); }

 private:
  FieldLabel& label_;
  Text text_;  // as given; the label shows it made fit for people
};

class QtButton : public QtView, public Button {
 public:
  QtButton(WindowWidget& window, ActionButton& button);
  Text title() const override { return title_; }
  void setTitle(const Text& title) override;
  void setDescription(const Text& description) override;
  Enabled isEnabled() const override { return button_.isEnabled() ? Enabled::Yes : Enabled::No; }
  void setEnabled(Enabled enabled) override;

 private:
  ActionButton& button_;
  Text title_;
};

class QtImageView : public QtView, public ImageView {
 public:
  QtImageView(WindowWidget& window, PictureLabel& label) : QtView(window, label), label_(label) {}
  void setImage(const ImagePointer& image) override { label_.setImage(image); }

 private:
  PictureLabel& label_;
};

class QtTextView : public QtView, public TextView {
 public:
  QtTextView(WindowWidget& window, DocumentView& view) : QtView(window, view), view_(view) {}
  bool setDocumentFromFile(const Text& path) override;
  void setBackgroundColor(const ColorPointer& color) override { view_.setBackgroundColor(color); }
  void setTextColor(const ColorPointer& color) override { view_.setTextColor(color); }

 protected:
  QAbstractScrollArea* ownScrollArea() const override { return &view_; }

 private:
  DocumentView& view_;
};

class QtTabView : public QtView, public TabView {
 public:
  QtTabView(WindowWidget& window, QTabWidget& tabs) : QtView(window, tabs), tabs_(tabs) {}
  void showWithoutTabsAndBorder() override;
  void selectItem(int index) override;  // an index that has no page changes nothing
  int selectedItem() const override { return tabs_.currentIndex(); }

 private:
  QTabWidget& tabs_;
};

class QtProgressIndicator : public QtView, public ProgressIndicator {
 public:
  QtProgressIndicator(WindowWidget& window, Spinner& spinner) : QtView(window, spinner), spinner_(spinner) {}
  void setProgress(const std::optional<Progress>& progress) override;
  void startAnimation() override { spinner_.start(); }
  void stopAnimation() override { spinner_.stop(); }

 private:
  Spinner& spinner_;
};

class QtWindow : public Window {
 public:
  explicit QtWindow(WindowWidget& widget);
  Text title() const override { return title_; }
  void setTitle(const Text& title) override;
  void center() override;
  void makeKeyAndOrderFront() override;
  void orderFrontRegardless() override;
  void makeMain() override;
  bool isKeyWindow() const override;
  bool isMiniaturizeEnabled() const override;

 private:
  WindowWidget& widget_;
  Text title_;
};

}  // namespace halvorn
