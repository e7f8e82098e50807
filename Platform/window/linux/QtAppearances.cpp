#include "Platform/window/linux/QtAppearances.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/PlainAppearance.h"
#include "Platform/window/linux/QtWidgetView.h"

namespace halvorn {

// Sees each paint event before its widget does. The end of one is not told; but while a widget paints, the
// toolkit marks it, so the marks tell which of those seen are still at it.
class QtAppearances::PaintWatch : public QObject {
 public:
  // Of the widgets that paint now, the innermost; null for none.
  const QWidget* painting() {
    while (!seen_.empty() && !isPainting(seen_.back())) seen_.pop_back();
    return seen_.empty() ? nullptr : seen_.back().data();
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && object->isWidgetType()) {
      painting();
      seen_.emplace_back(static_cast<QWidget*>(object));
    }
    return false;
  }

 private:
  static bool isPainting(const QPointer<QWidget>& widget) {
    return !widget.isNull() && widget->testAttribute(Qt::WA_WState_InPaintEvent);
  }
  std::vector<QPointer<QWidget>> seen_;
};

QtAppearances::QtAppearances(const DesktopAppearance& desktop)
    : desktop_(desktop), watch_(std::make_unique<PaintWatch>()) {
  QCoreApplication::instance()->installEventFilter(watch_.get());
}

QtAppearances::~QtAppearances() = default;

AppearancePointer QtAppearances::currentAppearance() const {
  const QWidget* widget = watch_->painting();
  if (widget == nullptr) return nullptr;
  const AppearanceName held = appearanceHeldBy(*widget);
  return held == AppearanceName::Inherited ? effectiveAppearance() : std::make_shared<PlainAppearance>(held);
}

AppearancePointer QtAppearances::effectiveAppearance() const {
  const bool isDark = desktop_.style() == InterfaceStyle::Dark;
  return std::make_shared<PlainAppearance>(isDark ? AppearanceName::DarkAqua : AppearanceName::Aqua);
}

}  // namespace halvorn
