// Any widget as a view.
//
// Thread: main. The widget must outlive the view; several views of one widget are the same view to everybody.
#pragma once

#include <QWidget>

#include "Platform/window/Views.h"

class QAbstractScrollArea;

namespace halvorn {

class QtWidgetView : public virtual View {
 public:
  explicit QtWidgetView(QWidget& widget) : widget_(widget) {}

  void setHidden(Hidden hidden) override { widget_.setVisible(hidden == Hidden::No); }
  Hidden isHidden() const override { return widget_.isHidden() ? Hidden::Yes : Hidden::No; }
  void setAppearance(AppearanceName name) override;
  AppearanceName appearance() const override;

  std::shared_ptr<View> superview() override;
  // Keeps its place in a layout free until it comes back.
  void removeFromSuperviewWithoutNeedingDisplay() override;
  void addSubview(View& subview, ViewPosition positioned, View* relativeTo) override;
  std::shared_ptr<ScrollView> enclosingScrollView() override;
  Rect visibleRect() const override;
  bool scrollRectToVisible(const Rect& rect) override;

 protected:
  // The area whose document the view stands for, when the widget scrolls its own contents.
  [[nodiscard]] virtual QAbstractScrollArea* ownScrollArea() const { return nullptr; }

 private:
  QWidget& widget_;
};

// The appearance that the widget, or the nearest one that holds it, is held to.
[[nodiscard]] AppearanceName appearanceHeldBy(const QWidget& widget);

}  // namespace halvorn
