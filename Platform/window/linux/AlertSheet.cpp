#include "Platform/window/linux/AlertSheet.h"

#include <QBoxLayout>
#include <QShowEvent>
#include <QStyle>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/pictures/PictureLabel.h"

namespace halvorn {
namespace {

constexpr int kIconSide = 64;
constexpr int kWidth = 500;

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
  made->setMaximumLines(12);
  made->setFieldText(forDisplay(text));
  return made;
}

}  // namespace

AlertSheet::AlertSheet(const AlertDescription& alert, QWidget* window, std::function<void(int)> ended)
    : QDialog(window, Qt::Sheet | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      ended_(std::move(ended)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(window->windowTitle());
  setAccessibleName(forDisplay(alert.messageText));
  setAccessibleDescription(forDisplay(alert.informativeText));

  auto* icon = new PictureLabel(kIconSide, this);
  const auto standard = style()->standardIcon(standardIcon(alert.style), nullptr, this);
  icon->setImage(alert.icon ? alert.icon : std::make_shared<const ThemedImage>(standard));

  FieldLabel* message = label(alert.messageText, this);
  QFont bold = message->font();
  bold.setWeight(QFont::DemiBold);
  message->setFont(bold);
  FieldLabel* information = label(alert.informativeText, this);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(10);
  texts->addWidget(message);
  texts->addWidget(information);
  texts->addStretch(1);
  auto* top = new QHBoxLayout;
  top->setSpacing(20);
  top->addWidget(icon, 0, Qt::AlignTop);
  top->addLayout(texts, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(12);
  addButtons(alert, buttons);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(24, 24, 24, 16);
  whole->setSpacing(20);
  whole->addLayout(top, 1);
  whole->addLayout(buttons);

  // Escape and the close button.
  connect(this, &QDialog::rejected, this, [this] { end(kAlertFirstButtonReturn); });
}

// The first button stands at the trailing edge, where the default button of the window stands too, the next
// ones before it; the Tab key walks from the first on.
void AlertSheet::addButtons(const AlertDescription& alert, QBoxLayout* into) {
  into->addStretch(1);
  int code = kAlertFirstButtonReturn;
  for (const Text& title : alert.buttonTitles) {
    auto* button = new ActionButton(ActionButton::Shape::Plain, this);
    button->setTitle(forDisplay(title));
    into->insertWidget(1, button);
    if (code == kAlertFirstButtonReturn) {
      button->setDefault(true);
      button->setFocus(Qt::OtherFocusReason);
    }
    connect(button, &QAbstractButton::clicked, this, [this, code] { end(code); });
    ++code;
  }
}

// A click on the window below would otherwise take the keyboard there, where nothing can be pressed.
void AlertSheet::letWindowHaveKeyboard(bool may) {
  if (QWindow* below = parentWidget()->window()->windowHandle()) {
    below->setFlag(Qt::WindowDoesNotAcceptFocus, !may);
  }
}

void AlertSheet::showEvent(QShowEvent* event) {
  // As high as its texts need; in the middle of its window, as far as the screen goes.
  layout()->activate();
  const int width = std::max(kWidth, layout()->totalMinimumSize().width());
  resize(width, layout()->totalHeightForWidth(width));
  const QRect owner = parentWidget()->window()->frameGeometry();
  move(owner.center().x() - width / 2, owner.top() + std::max(24, (owner.height() - height()) / 3));
  QDialog::showEvent(event);
  letWindowHaveKeyboard(false);
}

void AlertSheet::end(int returnCode) {
  const auto ended = std::exchange(ended_, nullptr);
  if (!ended) return;
  letWindowHaveKeyboard(true);
  close();
  parentWidget()->window()->activateWindow();
  ended(returnCode);
}

}  // namespace halvorn
