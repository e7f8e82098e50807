#include "Platform/window/linux/WindowWidget.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QScreen>
#include <algorithm>

namespace halvorn {

WindowWidget::WindowWidget() : QWidget(nullptr, Qt::Window) {}

bool WindowWidget::add(const QString& id, QWidget* widget) {
  if (widgets_.contains(id)) return false;
  widget->setObjectName(id);
  widgets_.insert(id, widget);
  return true;
}

void WindowWidget::setKeyButton(Qt::Key key, QAbstractButton* button) {
  (key == Qt::Key_Escape ? escapeButton_ : returnButton_) = button;
}

QList<QWidget*> WindowWidget::followersOf(const QWidget* widget) const {
  return followers_.values(widget->objectName());
}

void WindowWidget::addPage(QWidget* page, const QString& focusId) {
  pageFocus_.insert(static_cast<int>(pages_.size()), focusId);
  pages_ << page;
}

void WindowWidget::focusPage(int page) {
  page_ = page;
  if (QWidget* first = find<QWidget>(pageFocus_.value(page))) first->setFocus(Qt::OtherFocusReason);
}

void WindowWidget::restoreFocus() {
  const QWidget* owner = focusWidget();
  if (owner != nullptr && owner->isEnabled() && owner->isVisibleTo(this)) return;
  focusPage(page_);
}

void WindowWidget::fitTexts() {
  if (layout() == nullptr || pages_.isEmpty()) return;
  layout()->activate();
  // All pages, so that the window does not jump when another one is chosen.
  int missing = 0;
  const QWidget* tabs = find<QWidget>(QStringLiteral("tabView"));
  for (const QWidget* page : pages_) {
    page->layout()->activate();
    missing = std::max(missing, page->layout()->totalHeightForWidth(width()) - tabs->height());
  }
  const int most = screen()->availableGeometry().height();
  if (missing > 0) resize(width(), std::min(height() + missing, most));
}

void WindowWidget::keyPressEvent(QKeyEvent* event) {
  QAbstractButton* button = nullptr;
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) button = returnButton_;
  if (event->key() == Qt::Key_Escape) button = escapeButton_;
  if (button == nullptr) {
    QWidget::keyPressEvent(event);
    return;
  }
  // A button that has the keyboard is the one that Return presses.
  auto* focused = dynamic_cast<QAbstractButton*>(focusWidget());
  if (button == returnButton_ && focused != nullptr && focused->isVisible()) button = focused;
  if (button->isVisible() && button->isEnabled()) button->click();
}

void WindowWidget::closeEvent(QCloseEvent* event) {
  event->accept();
  if (closed) closed();
}

void WindowWidget::showEvent(QShowEvent* event) {
  fitTexts();
  QWidget::showEvent(event);
}

}  // namespace halvorn
