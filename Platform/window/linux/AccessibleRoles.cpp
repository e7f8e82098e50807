#include "Platform/window/linux/AccessibleRoles.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "Platform/window/linux/AlertSheet.h"
#include "Platform/window/linux/AnnouncementArea.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

QAccessibleInterface* accessibleFor(const QString&, QObject* object) {
  auto* widget = dynamic_cast<QWidget*>(object);
  if (dynamic_cast<WindowWidget*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::Window);
  if (dynamic_cast<AlertSheet*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::AlertMessage);
  if (dynamic_cast<PictureLabel*>(object) != nullptr)
    return new QAccessibleWidget(widget, QAccessible::Graphic);
  if (dynamic_cast<AnnouncementArea*>(object) != nullptr) {
    return new QAccessibleWidget(widget, QAccessible::Notification);
  }
  return nullptr;  // the toolkit's own
}

}  // namespace

void installAccessibleRoles() {
  QAccessible::removeFactory(accessibleFor);
  QAccessible::installFactory(accessibleFor);
}

}  // namespace halvorn
