#include "Platform/linux/ui/AccessibleRoles.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "Platform/linux/ui/AlertSheet.h"
#include "Platform/linux/ui/AnnouncementArea.h"
#include "Platform/linux/ui/PictureLabel.h"
#include "Platform/linux/ui/WindowWidget.h"

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
