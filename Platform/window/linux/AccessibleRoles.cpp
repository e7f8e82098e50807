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

// The window is at work as long as its wheel is. Both may be asked when what they are about is half destroyed: it is
// no window and no wheel any more then.
class AccessibleWindowWidget : public QAccessibleWidget {
 public:
  explicit AccessibleWindowWidget(QWidget* window) : QAccessibleWidget(window, QAccessible::Window) {}
  [[nodiscard]] QAccessible::State state() const override {
    const auto* window = dynamic_cast<WindowWidget*>(object());
    return alsoBusy(QAccessibleWidget::state(),
                    window != nullptr ? window->find<Spinner>(QStringLiteral("progressIndicator")) : nullptr);
  }
};

// What the toolkit says of a progress bar, which cannot be derived from.
class AccessibleSpinner : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleSpinner(QWidget* spinner) : QAccessibleWidget(spinner, QAccessible::ProgressBar) {}
  [[nodiscard]] QAccessible::State state() const override {
    return alsoBusy(QAccessibleWidget::state(), spinner());
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? currentValue().toString() : QAccessibleWidget::text(kind);
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  [[nodiscard]] QVariant currentValue() const override { return spinner() ? spinner()->value() : 0; }
  void setCurrentValue(const QVariant&) override {}
  [[nodiscard]] QVariant minimumValue() const override { return spinner() ? spinner()->minimum() : 0; }
  [[nodiscard]] QVariant maximumValue() const override { return spinner() ? spinner()->maximum() : 0; }
  [[nodiscard]] QVariant minimumStepSize() const override { return {}; }

 private:
  [[nodiscard]] const Spinner* spinner() const { return dynamic_cast<Spinner*>(object()); }
};

QAccessibleInterface* accessibleFor(const QString&, QObject* object) {
  auto* widget = dynamic_cast<QWidget*>(object);
  if (dynamic_cast<WindowWidget*>(object) != nullptr) return new AccessibleWindowWidget(widget);
  if (dynamic_cast<Spinner*>(object) != nullptr) return new AccessibleSpinner(widget);
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
