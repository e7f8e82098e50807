#include "Platform/window/linux/AccessibleRoles.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QStackedWidget>

#include "Platform/window/linux/AlertSheet.h"
#include "Platform/window/linux/AnnouncementArea.h"
#include "Platform/window/linux/Spinner.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

QAccessible::State alsoBusy(QAccessible::State state, const Spinner* spinner) {
  state.busy = spinner != nullptr && spinner->isWorking();
  return state;
}

// The window is at work as long as its wheel is.
class AccessibleWindowWidget : public QAccessibleWidget {
 public:
  explicit AccessibleWindowWidget(WindowWidget& window)
      : QAccessibleWidget(&window, QAccessible::Window), window_(window) {}
  [[nodiscard]] QAccessible::State state() const override {
    return alsoBusy(QAccessibleWidget::state(), window_.find<Spinner>(QStringLiteral("progressIndicator")));
  }

 private:
  WindowWidget& window_;
};

// What the toolkit says of a progress bar, which cannot be derived from.
class AccessibleSpinner : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleSpinner(Spinner& spinner)
      : QAccessibleWidget(&spinner, QAccessible::ProgressBar), spinner_(spinner) {}
  [[nodiscard]] QAccessible::State state() const override {
    return alsoBusy(QAccessibleWidget::state(), &spinner_);
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? QString::number(spinner_.value()) : QAccessibleWidget::text(kind);
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  [[nodiscard]] QVariant currentValue() const override { return spinner_.value(); }
  void setCurrentValue(const QVariant&) override {}
  [[nodiscard]] QVariant minimumValue() const override { return spinner_.minimum(); }
  [[nodiscard]] QVariant maximumValue() const override { return spinner_.maximum(); }
  [[nodiscard]] QVariant minimumStepSize() const override { return {}; }

 private:
  Spinner& spinner_;
};

QAccessibleInterface* accessibleFor(const QString&, QObject* object) {
  auto* widget = dynamic_cast<QWidget*>(object);
  if (auto* window = dynamic_cast<WindowWidget*>(object)) return new AccessibleWindowWidget(*window);
  if (auto* spinner = dynamic_cast<Spinner*>(object)) return new AccessibleSpinner(*spinner);
  if (dynamic_cast<AlertSheet*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::AlertMessage);
  if (dynamic_cast<PictureLabel*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::Graphic);
  if (dynamic_cast<AnnouncementArea*>(object) != nullptr) {
    return new QAccessibleWidget(widget, QAccessible::Notification);
  }
  // Pages without tabs are nothing that one hears of.
  if (dynamic_cast<QStackedWidget*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::Client);
  return nullptr;  // the toolkit's own
}

}  // namespace

void installAccessibleRoles() {
  QAccessible::removeFactory(accessibleFor);
  QAccessible::installFactory(accessibleFor);
}

}  // namespace halvorn
