#include "Platform/window/linux/WindowWidget.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QScreen>
#include <QTabWidget>
#include <algorithm>
#include <vector>

#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/Mnemonics.h"
#include "Platform/window/linux/PageScroller.h"
#include "Platform/window/linux/WorkArea.h"

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
  QList<QWidget*> captions;
  for (QLabel* caption : followers_.values(widget->objectName())) captions << caption;
  return captions;
}

void WindowWidget::relateCaptions() {
  for (auto each = followers_.begin(); each != followers_.end(); ++each)
    each.value()->setBuddy(find<QWidget>(each.key()));
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

void WindowWidget::takeWantedSize() {
  if (wanted_.isEmpty()) return;
  const QSize most = roomFor(*this);
  resize(std::min(qRound(wanted_.width() * timesWider(font())), most.width()),
         std::min(wanted_.height(), most.height()));
  wanted_ = {};
}

void WindowWidget::fitTexts() {
  if (layout() == nullptr || pages_.isEmpty()) return;
  takeWantedSize();
  layout()->activate();
  // All pages, so that the window does not jump when another one is chosen.
  int missing = 0;
  const QWidget* tabs = find<QWidget>(QStringLiteral("tabView"));
  for (const QWidget* page : pages_) {
    page->layout()->activate();
    missing = std::max(missing, page->layout()->totalHeightForWidth(width()) - tabs->height());
  }
  if (missing > 0) resize(width(), std::min(height() + missing, roomFor(*this).height()));
  if (isVisible()) keepInWorkArea();
}

// Where it grew past the lower edge.
void WindowWidget::keepInWorkArea() {
  const QRect space = screen()->availableGeometry();
  const QRect whole = frameGeometry();
  if (whole.bottom() <= space.bottom()) return;
  move(whole.x(), std::max(space.top(), space.bottom() + 1 - whole.height()));
}

void WindowWidget::assignMnemonics() {
  QList<ActionButton*> shown;
  QStringList titles;
  for (QPushButton* each : findChildren<QPushButton*>()) {
    auto* const button = dynamic_cast<ActionButton*>(each);
    if (button == nullptr || button->isHidden()) continue;
    shown << button;
    titles << button->title();
  }
  const std::vector<QChar> letters = mnemonicsFor(titles);
  for (qsizetype i = 0; i < shown.size(); ++i) shown[i]->setMnemonic(letters[static_cast<std::size_t>(i)]);
}

bool WindowWidget::pressKeyButton(int key) {
  QAbstractButton* button = nullptr;
  if (key == Qt::Key_Return || key == Qt::Key_Enter) button = returnButton_;
  if (key == Qt::Key_Escape) button = escapeButton_;
  if (button == nullptr) return false;
  // A button that has the keyboard is the one that Return presses.
  auto* focused = dynamic_cast<QAbstractButton*>(focusWidget());
  if (button == returnButton_ && focused != nullptr && focused->isVisible()) button = focused;
  if (button->isVisible() && button->isEnabled()) button->click();
  return true;
}

// What people try in any window.
bool WindowWidget::performShortcut(const QKeyEvent& event) {
  const bool withControl = event.modifiers() == Qt::ControlModifier;
  if (withControl && (event.key() == Qt::Key_Q || event.key() == Qt::Key_W)) return close(), true;
  if (event.matches(QKeySequence::Copy)) return FieldLabel::copyMarkedIn(*this);
  if (event.key() == Qt::Key_F1) {
    auto* help = find<QAbstractButton>(QStringLiteral("helpButton"));
    if (help != nullptr && help->isVisible() && help->isEnabled()) help->click();
    return true;
  }
  const auto* tabs = find<QTabWidget>(QStringLiteral("tabView"));
  auto* page = tabs != nullptr ? dynamic_cast<PageScroller*>(tabs->currentWidget()) : nullptr;
  return page != nullptr && page->scrollBy(event.key());
}

void WindowWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Alt) update();  // the letters under the titles
  if (!pressKeyButton(event->key()) && !performShortcut(*event)) QWidget::keyPressEvent(event);
}

void WindowWidget::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Alt) update();
  QWidget::keyReleaseEvent(event);
}

void WindowWidget::closeEvent(QCloseEvent* event) {
  event->accept();
  if (closed) closed();
}

// What is narrower is higher: everything can still be reached.
void WindowWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (layout() != nullptr)
    setMinimumHeight(std::min(layout()->totalMinimumHeightForWidth(width()), roomFor(*this).height()));
}

void WindowWidget::showEvent(QShowEvent* event) {
  fitTexts();
  QWidget::showEvent(event);
}

}  // namespace halvorn
