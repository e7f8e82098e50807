#include "Platform/window/linux/QtViews.h"

#include <QApplication>
#include <QScreen>
#include <QTabBar>

#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/WorkArea.h"
#include "Platform/window/linux/readme/ReadMeDocument.h"

namespace halvorn {

// A view that the description hides was told so; the others are not on the screen yet either.
QtView::QtView(WindowWidget& window, QWidget& widget)
    : QtWidgetView(widget),
      window_(window),
      widget_(widget),
      hidden_(widget.testAttribute(Qt::WA_WState_ExplicitShowHide) && widget.isHidden() ? Hidden::Yes
                                                                                        : Hidden::No) {}

void QtView::setHidden(Hidden hidden) {
  hidden_ = hidden;
  const bool visible = hidden == Hidden::No;
  if (!visible) widget_.clearFocus();  // or the toolkit hands the keyboard to the next control
  widget_.setVisible(visible);
  for (QWidget* caption : window_.followersOf(&widget_)) caption->setVisible(visible);
  window_.assignMnemonics();
  if (!window_.isVisible()) return;
  window_.restoreFocus();
  window_.fitTexts();
}

QtTextField::QtTextField(WindowWidget& window, FieldLabel& label)
    : QtView(window, label), label_(label), text_(toText(label.text())) {}

void QtTextField::setStringValue(const Text& text) {
  text_ = text;
  label_.setFieldText(forDisplay(text));
  if (window_.isVisible()) window_.fitTexts();
}

QtButton::QtButton(WindowWidget& window, ActionButton& button)
    : QtView(window, button), button_(button), title_(toText(button.title())) {}

void QtButton::setTitle(const Text& title) {
  title_ = title;
  button_.setTitle(forDisplay(title));
  window_.assignMnemonics();
}

void QtButton::setDescription(const Text& description) {
  button_.setAccessibleDescription(forDisplay(description));
}

void QtButton::setEnabled(Enabled enabled) {
  if (enabled == Enabled::No) button_.clearFocus();  // or the toolkit hands the keyboard to the next control
  button_.setEnabled(enabled == Enabled::Yes);
  if (window_.isVisible()) window_.restoreFocus();
}

bool QtTextView::setDocumentFromFile(const Text& path) {
  ReadMeDocument read = readMeDocument(path);
  const bool isThere = read.document != nullptr;
  view_.showDocument(std::move(read));
  return isThere;
}

void QtTabView::showWithoutTabsAndBorder() {
  tabs_.tabBar()->hide();
  tabs_.setDocumentMode(true);
  // Without tabs there is nothing in it for the Tab key to stop at.
  tabs_.setFocusPolicy(Qt::NoFocus);
  tabs_.tabBar()->setFocusPolicy(Qt::NoFocus);
}

void QtTabView::selectItem(int index) {
  if (index < 0 || index >= tabs_.count()) return;
  tabs_.setCurrentIndex(index);
  window_.focusPage(index);
}

void QtProgressIndicator::setProgress(const std::optional<Progress>& progress) {
  if (!progress) return spinner_.forgetProgress();
  spinner_.setProgress(progress->share, forDisplay(progress->text));
}

QtWindow::QtWindow(WindowWidget& widget) : widget_(widget), title_(toText(widget.windowTitle())) {}

void QtWindow::setTitle(const Text& title) {
  title_ = title;
  // The toolkit takes the program's name for an empty title and "[*]" for the mark of a changed document.
  QString shown =
      forDisplay(title).replace(u'\n', u' ').replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
  widget_.setWindowTitle(shown.isEmpty() ? QStringLiteral(" ") : shown);
}

void QtWindow::center() {
  const QScreen* screen = widget_.screen();
  if (screen == nullptr) return;
  widget_.fitTexts();
  const QRect space = screen->availableGeometry();
  const QSize whole = widget_.size().grownBy(frameAround(widget_));
  const QSize left = (space.size() - whole).expandedTo({0, 0});
  widget_.move(space.topLeft() + QPoint(left.width() / 2, left.height() / 2));
}

void QtWindow::makeKeyAndOrderFront() {
  widget_.show();
  widget_.raise();
  widget_.activateWindow();
}

void QtWindow::orderFrontRegardless() {
  widget_.show();
  widget_.raise();
}

void QtWindow::makeMain() { widget_.activateWindow(); }

// Also while an alert hangs on it.
bool QtWindow::isKeyWindow() const {
  const QWidget* active = QApplication::activeWindow();
  return active != nullptr && (active == &widget_ || active->parentWidget() == &widget_);
}

bool QtWindow::isMiniaturizeEnabled() const {
  return widget_.windowFlags().testFlag(Qt::WindowMinimizeButtonHint);
}

}  // namespace halvorn
