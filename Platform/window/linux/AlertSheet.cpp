#include "Platform/window/linux/AlertSheet.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QShowEvent>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/PageScroller.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/RowOrColumn.h"
#include "Platform/window/linux/WorkArea.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

constexpr int kIconSide = 64;
constexpr int kWidth = 500;
constexpr int kMargin = 24;  // to the edges of the window inside which it stands
constexpr int kCharactersBesidePicture = 22;
constexpr qreal kCorner = 8;

QStyle::StandardPixmap standardIcon(AlertDescription::Style style) {
  switch (style) {
    case AlertDescription::Style::Informational:
      return QStyle::SP_MessageBoxInformation;
    case AlertDescription::Style::Critical:
      return QStyle::SP_MessageBoxCritical;
    case AlertDescription::Style::Warning:
      break;
  }
  return QStyle::SP_MessageBoxWarning;
}

FieldLabel* label(const Text& text, QWidget* parent) {
  auto* made = new FieldLabel(parent);
  made->setMaximumLines(60);
  made->setFieldText(forDisplay(text));
  return made;
}

}  // namespace

// On Wayland only the compositor places windows, and most put a sheet beside its window.
SheetPlace usualSheetPlace() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland")) ? SheetPlace::InsideWindow
                                                                              : SheetPlace::OwnWindow;
}

AlertSheet::AlertSheet(const AlertDescription& alert, QWidget* window, std::function<void(int)> ended,
                       SheetPlace place)
    : QDialog(window, Qt::Sheet | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      place_(place),
      ended_(std::move(ended)) {
  setAttribute(Qt::WA_DeleteOnClose);
  if (place_ == SheetPlace::InsideWindow) {
    setWindowFlags(Qt::Widget);
    window->installEventFilter(this);
    focusBefore_ = window->focusWidget();  // the first button takes it as soon as it is made
  } else {
    setWindowModality(Qt::WindowModal);
  }
  setWindowTitle(window->windowTitle());
  setAccessibleName(forDisplay(alert.messageText));

  texts_ = new PageScroller(pageOf(alert));
  // The sheet is drawn below it, round corners and all.
  texts_->viewport()->setAutoFillBackground(false);
  texts_->widget()->setAutoFillBackground(false);
  buttons_ = buttonsOf(alert);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->setSpacing(0);
  whole->addWidget(texts_, 1);
  whole->addLayout(buttons_);

  // Escape and the close button.
  connect(this, &QDialog::rejected, this, [this] { end(kAlertFirstButtonReturn); });
}

QWidget* AlertSheet::pageOf(const AlertDescription& alert) {
  auto* page = new QWidget(this);
  auto* icon = new PictureLabel(kIconSide, page);
  const auto standard = style()->standardIcon(standardIcon(alert.style), nullptr, this);
  icon->setImage(alert.icon ? alert.icon : std::make_shared<const ThemedImage>(standard));
  icon->setAccessibleName(QCoreApplication::translate("AlertSheet", "Warning"));

  FieldLabel* message = label(alert.messageText, page);
  QFont bold = message->font();
  bold.setWeight(QFont::DemiBold);
  message->setFont(bold);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(10);
  texts->addWidget(message);
  texts->addWidget(label(alert.informativeText, page));
  texts->addStretch(1);
  auto* row = new RowOrColumn(kCharactersBesidePicture);
  row->setSpacing(20);
  row->setContentsMargins(24, 24, 24, 10);
  row->addWidget(icon, 0, Qt::AlignTop | Qt::AlignLeading);
  row->addLayout(texts, 1);
  page->setLayout(row);
  return page;
}

// The first button stands at the trailing edge, where the default button of the window stands too, the next
// ones before it; the Tab key walks from the first on.
QBoxLayout* AlertSheet::buttonsOf(const AlertDescription& alert) {
  auto* buttons = new RowOrColumn(0);
  buttons->setSpacing(12);
  int code = kAlertFirstButtonReturn;
  for (const Text& title : alert.buttonTitles) {
    auto* button = new ActionButton(ActionButton::Shape::Plain, this);
    button->setTitle(forDisplay(title));
    buttons->insertWidget(0, button);
    if (code == kAlertFirstButtonReturn) {
      button->setDefault(true);
      button->setFocus(Qt::OtherFocusReason);
    }
    connect(button, &QAbstractButton::clicked, this, [this, code] { end(code); });
    ++code;
  }
  auto* row = new QHBoxLayout;
  row->setContentsMargins(24, 10, 24, 16);
  row->addStretch(1);
  row->addLayout(buttons);
  return row;
}

// A click on the window below would otherwise take the keyboard there, where nothing can be pressed.
void AlertSheet::letWindowHaveKeyboard(bool may) {
  if (QWindow* below = parentWidget()->window()->windowHandle()) {
    below->setFlag(Qt::WindowDoesNotAcceptFocus, !may);
  }
}

// As high as its texts need, as far as there is room.
QSize AlertSheet::neededSize() const {
  layout()->activate();
  texts_->widget()->layout()->activate();
  const int around = place_ == SheetPlace::InsideWindow ? 2 * kMargin : 0;
  const QSize most = roomFor(*window()) - QSize(around, around);
  const int width = std::min(
      std::max(qRound(kWidth * timesWider(font())), layout()->totalMinimumSize().width()), most.width());
  const int buttons =
      buttons_->hasHeightForWidth() ? buttons_->heightForWidth(width) : buttons_->sizeHint().height();
  return {width, std::min(texts_->widget()->layout()->totalHeightForWidth(width) + buttons, most.height())};
}

void AlertSheet::showEvent(QShowEvent* event) {
  if (place_ == SheetPlace::InsideWindow) {
    standInside();
    letWindowBeUsed(false);
    QDialog::showEvent(event);
    return;
  }
  // Some window managers show a button for the largest size wherever another size is possible at all.
  setFixedSize(neededSize());
  standOver(parentWidget()->window()->frameGeometry());
  QDialog::showEvent(event);
  letWindowHaveKeyboard(false);
}

// In the middle of its window, as far as the screen goes.
void AlertSheet::standOver(const QRect& owner) {
  const QRect space = screen()->availableGeometry();
  const QSize last = space.size() - size().grownBy(frameAround(*this));
  const QPoint wanted(owner.center().x() - width() / 2,
                      owner.top() + std::max(kMargin, (owner.height() - height()) / 3));
  move(std::clamp(wanted.x(), space.left(), space.left() + std::max(last.width(), 0)),
       std::clamp(wanted.y(), space.top(), space.top() + std::max(last.height(), 0)));
}

void AlertSheet::standInside() {
  QWidget* window = parentWidget();
  resize(neededSize());
  const QSize least = size() + QSize(2 * kMargin, 2 * kMargin);
  if (window->width() < least.width() || window->height() < least.height())
    window->resize(window->size().expandedTo(least));
  move((window->width() - width()) / 2, std::max(kMargin, (window->height() - height()) / 3));
  raise();
}

// Nothing but the sheet can be pressed, by mouse, key or assistive program.
void AlertSheet::letWindowBeUsed(bool may) {
  if (may) {
    for (const auto& widget : std::exchange(blocked_, {})) {
      if (widget) widget->setEnabled(true);
    }
    if (focusBefore_) focusBefore_->setFocus(Qt::OtherFocusReason);
    return;
  }
  for (auto* widget : parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (widget == this || widget->isWindow() || !widget->isEnabled()) continue;
    widget->setEnabled(false);
    blocked_ << widget;
  }
  if (auto* first = findChild<QAbstractButton*>()) first->setFocus(Qt::OtherFocusReason);
}

void AlertSheet::paintEvent(QPaintEvent* event) {
  if (place_ == SheetPlace::OwnWindow) return QDialog::paintEvent(event);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

void AlertSheet::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy) && FieldLabel::copyMarkedIn(*this)) return;
  if (!texts_->scrollBy(event->key())) QDialog::keyPressEvent(event);
}

// The Tab key stays inside: a window of its own it would not leave either.
bool AlertSheet::focusNextPrevChild(bool next) {
  if (place_ == SheetPlace::OwnWindow) return QDialog::focusNextPrevChild(next);
  const auto buttons = findChildren<QAbstractButton*>();
  const auto count = buttons.size();
  if (count == 0) return false;
  const auto current = buttons.indexOf(qobject_cast<QAbstractButton*>(parentWidget()->focusWidget()));
  const auto target = (current + (next ? 1 : count - 1)) % count;
  buttons[target]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

bool AlertSheet::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && isVisible()) {
    if (event->type() == QEvent::Resize) standInside();
    if (event->type() == QEvent::Close) {
      event->ignore();
      end(kAlertFirstButtonReturn);
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

void AlertSheet::end(int returnCode) {
  const auto ended = std::exchange(ended_, nullptr);
  if (!ended) return;
  if (place_ == SheetPlace::InsideWindow) {
    parentWidget()->removeEventFilter(this);
    letWindowBeUsed(true);
  } else {
    letWindowHaveKeyboard(true);
  }
  close();
  parentWidget()->window()->activateWindow();
  ended(returnCode);
}

}  // namespace halvorn
