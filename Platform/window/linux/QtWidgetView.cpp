#include "Platform/window/linux/QtWidgetView.h"

#include <QAbstractScrollArea>
#include <QLayout>
#include <QPointer>

#include "Platform/color/linux/Palettes.h"
#include "Platform/window/linux/QtScrollViews.h"

namespace halvorn {
namespace {

constexpr char kAppearance[] = "heldAppearance";
constexpr char kHiddenBefore[] = "hiddenBeforeRemoval";

// Keeps the place of a widget that was taken out.
class PlaceKeeper : public QWidget {
 public:
  PlaceKeeper(QWidget* parent, QWidget* keptFor) : QWidget(parent), keptFor_(keptFor) { hide(); }
  [[nodiscard]] bool isFor(const QWidget* widget) const { return keptFor_ == widget; }

 private:
  QPointer<QWidget> keptFor_;
};

PlaceKeeper* placeOf(const QWidget* widget, const QWidget& superview) {
  for (QObject* child : superview.children()) {
    auto* place = dynamic_cast<PlaceKeeper*>(child);
    if (place != nullptr && place->isFor(widget)) return place;
  }
  return nullptr;
}

// What the layout had for it, if it had.
void replaceInLayout(QWidget& superview, QWidget* widget, QWidget* by) {
  if (QLayout* layout = superview.layout()) delete layout->replaceWidget(widget, by);
}

// The area around the widget whose contents it belongs to.
QAbstractScrollArea* areaAround(const QWidget& widget) {
  for (const QWidget* inside = &widget; !inside->isWindow(); inside = inside->parentWidget()) {
    QWidget* holder = inside->parentWidget();
    if (holder == nullptr) return nullptr;
    auto* area = qobject_cast<QAbstractScrollArea*>(holder->parentWidget());
    if (area != nullptr && area->viewport() == holder) return area;
  }
  return nullptr;
}

Rect upwards(const QRect& rect, int height) {
  if (rect.isEmpty()) return {};
  return {static_cast<double>(rect.x()), static_cast<double>(height - rect.y() - rect.height()),
          static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

void stack(QWidget* widget, ViewPosition positioned, QWidget* sibling) {
  if (positioned == ViewPosition::Above) {
    widget->raise();
    if (sibling == nullptr) return;
    // Below the one that stood above the sibling so far.
    const QObjectList& all = widget->parentWidget()->children();
    for (auto at = all.indexOf(sibling) + 1; at < all.size(); ++at) {
      auto* next = qobject_cast<QWidget*>(all.at(at));
      if (next != nullptr && next != widget) return widget->stackUnder(next);
    }
  } else if (sibling != nullptr) {
    widget->stackUnder(sibling);
  } else {
    widget->lower();
  }
}

}  // namespace

AppearanceName appearanceHeldBy(const QWidget& widget) {
  for (const QWidget* at = &widget; at != nullptr; at = at->isWindow() ? nullptr : at->parentWidget()) {
    const QVariant held = at->property(kAppearance);
    if (held.isValid()) return static_cast<AppearanceName>(held.toInt());
  }
  return AppearanceName::Inherited;
}

void QtWidgetView::setAppearance(AppearanceName name) {
  widget_.setProperty(kAppearance,
                      name == AppearanceName::Inherited ? QVariant() : QVariant(static_cast<int>(name)));
  switch (name) {
    case AppearanceName::Inherited:
      widget_.setPalette(QPalette());
      break;
    case AppearanceName::Aqua:
      widget_.setPalette(paletteFor(Look::Light));
      break;
    case AppearanceName::DarkAqua:
      widget_.setPalette(paletteFor(Look::Dark));
      break;
  }
  widget_.update();
}

AppearanceName QtWidgetView::appearance() const {
  const QVariant held = widget_.property(kAppearance);
  return held.isValid() ? static_cast<AppearanceName>(held.toInt()) : AppearanceName::Inherited;
}

std::shared_ptr<View> QtWidgetView::superview() {
  QWidget* parent = widget_.isWindow() ? nullptr : widget_.parentWidget();
  return parent != nullptr ? std::make_shared<QtWidgetView>(*parent) : nullptr;
}

void QtWidgetView::removeFromSuperviewWithoutNeedingDisplay() {
  QWidget* parent = widget_.isWindow() ? nullptr : widget_.parentWidget();
  if (parent == nullptr) return;
  widget_.setProperty(kHiddenBefore, widget_.isHidden());
  replaceInLayout(*parent, &widget_, new PlaceKeeper(parent, &widget_));
  widget_.setParent(nullptr);
}

void QtWidgetView::addSubview(View& subview, ViewPosition positioned, View* relativeTo) {
  auto* added = dynamic_cast<QtWidgetView*>(&subview);
  if (added == nullptr) return;
  auto* sibling = dynamic_cast<QtWidgetView*>(relativeTo);
  QWidget* widget = &added->widget_;
  const QVariant hiddenBefore = widget->property(kHiddenBefore);
  const bool isHidden = hiddenBefore.isValid()
                            ? hiddenBefore.toBool()
                            : widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
  widget->setProperty(kHiddenBefore, QVariant());
  widget->setParent(&widget_);
  if (PlaceKeeper* place = placeOf(widget, widget_)) {
    replaceInLayout(widget_, place, widget);
    delete place;
  }
  stack(widget, positioned, sibling != nullptr ? &sibling->widget_ : nullptr);
  widget->setVisible(!isHidden);
}

std::shared_ptr<ScrollView> QtWidgetView::enclosingScrollView() {
  QAbstractScrollArea* area = ownScrollArea();
  if (area == nullptr) area = areaAround(widget_);
  return area != nullptr ? std::make_shared<QtScrollView>(*area) : nullptr;
}

Rect QtWidgetView::visibleRect() const {
  if (QAbstractScrollArea* area = ownScrollArea()) return QtClipView(*area).bounds();
  QRect seen = widget_.rect();
  QPoint offset;  // of the widget in the coordinates of the one looked at
  for (const QWidget* at = &widget_; !at->isWindow() && at->parentWidget() != nullptr;
       at = at->parentWidget()) {
    offset += at->pos();
    seen &= at->parentWidget()->rect().translated(-offset);
  }
  return upwards(seen, widget_.height());
}

bool QtWidgetView::scrollRectToVisible(const Rect& rect) {
  if (QAbstractScrollArea* area = ownScrollArea()) return QtScrollView(*area).scrollToVisible(rect);
  QAbstractScrollArea* area = areaAround(widget_);
  if (area == nullptr) return false;
  // In the coordinates of the contents, whose origin the clip view knows.
  const Rect bounds = QtClipView(*area).bounds();
  const QPoint corner = widget_.mapTo(area->viewport(), QPoint(0, widget_.height()));
  return QtScrollView(*area).scrollToVisible({bounds.x + corner.x() + rect.x,
                                              bounds.y + area->viewport()->height() - corner.y() + rect.y,
                                              rect.width, rect.height});
}

}  // namespace halvorn
