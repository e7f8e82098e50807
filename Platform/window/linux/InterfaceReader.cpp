#include "Platform/window/linux/InterfaceReader.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QStyle>
#include <QTabWidget>
#include <QXmlStreamReader>
#include <initializer_list>

#include "Core/Format.h"
#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/FieldLabel.h"
#include "Platform/window/linux/PageScroller.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/RowOrColumn.h"
#include "Platform/window/linux/Spinner.h"
#include "Platform/window/linux/pictures/PictureLabel.h"
#include "Platform/window/linux/readme/DocumentView.h"

namespace halvorn {
namespace {

constexpr int kDeepest = 16;

// Where "Cancel" stands at the edge of a window, and what it cancels before it.
bool actionStandsFirst(const QWidget& window) {
  return window.style()->styleHint(QStyle::SH_DialogButtonLayout) == QDialogButtonBox::KdeLayout;
}

// In the other order, for the eye and for the Tab key.
void turnAround(QBoxLayout& box) {
  for (int last = box.count() - 1, at = 0; at < last; ++at) box.insertItem(last - at, box.takeAt(0));
  for (int at = 0; at + 1 < box.count(); ++at) {
    QWidget* one = box.itemAt(at)->widget();
    QWidget* next = box.itemAt(at + 1)->widget();
    if (one != nullptr && next != nullptr) QWidget::setTabOrder(one, next);
  }
}

class Reader {
 public:
  Reader(const QByteArray& description, const LocalizedStrings& strings,
         std::function<ImagePointer(const Text&)> imageNamed)
      : xml_(description), strings_(strings), imageNamed_(std::move(imageNamed)) {}

  ReadInterface read();

 private:
  // The attributes of the element at hand.
  [[nodiscard]] QString value(const char* name) const {
    return xml_.attributes().value(QLatin1String(name)).toString();
  }
  [[nodiscard]] int number(const char* name, int otherwise) const {
    bool ok = false;
    const int found = value(name).toInt(&ok);
    return ok ? found : otherwise;
  }
  [[nodiscard]] QString localized(const char* name) const {
    const QString key = value(name);
    return key.isEmpty() ? key : toQString(strings_.localized(toText(key)));
  }

  void fail(const QString& what) {
    if (!xml_.hasError()) xml_.raiseError(what);
  }
  bool known(std::initializer_list<const char*> attributes);
  void registerWidget(QWidget* widget);

  void readChildren(QBoxLayout* into);
  void readBox(QBoxLayout* into, QBoxLayout::Direction direction);
  void readElement(QBoxLayout* into);
  void readSpace(QBoxLayout* into);
  void readTabView(QBoxLayout* into);
  void readPage(QTabWidget* tabs);
  void readTextField(QBoxLayout* into);
  void readImageView(QBoxLayout* into);
  void readTextView(QBoxLayout* into);
  void readButton(QBoxLayout* into);
  void readProgressIndicator(QBoxLayout* into);
  void readRule(QBoxLayout* into);
  void place(QBoxLayout* into, QWidget* widget, Qt::Alignment alignment = {});

  QXmlStreamReader xml_;
  const LocalizedStrings& strings_;
  std::function<ImagePointer(const Text&)> imageNamed_;
  std::unique_ptr<WindowWidget> window_;
  int depth_ = 0;
};

// A misspelt attribute would otherwise be a silent nothing.
bool Reader::known(std::initializer_list<const char*> attributes) {
  for (const QXmlStreamAttribute& attribute : xml_.attributes()) {
    bool found = false;
    for (const char* name : attributes) found = found || attribute.name() == QLatin1String(name);
    if (!found) {
      fail(QStringLiteral("unknown attribute %1 of %2").arg(attribute.name(), xml_.name()));
      return false;
    }
  }
  return true;
}

void Reader::registerWidget(QWidget* widget) {
  const QString id = value("id");
  if (!id.isEmpty() && !window_->add(id, widget)) fail(QStringLiteral("id %1 used twice").arg(id));
  if (const QString name = localized("name"); !name.isEmpty()) widget->setAccessibleName(name);
}

void Reader::place(QBoxLayout* into, QWidget* widget, Qt::Alignment alignment) {
  into->addWidget(widget, number("stretch", 0), alignment);
}

void Reader::readBox(QBoxLayout* into, QBoxLayout::Direction direction) {
  if (!known({"spacing", "margins", "stretch", "stacksBelow", "order"})) return;
  const bool asTheDesktop = value("order") == u"desktop";
  const bool stacks = !value("stacksBelow").isEmpty();
  QBoxLayout* box = stacks ? new RowOrColumn(number("stacksBelow", 0)) : new QBoxLayout(direction);
  box->setSpacing(number("spacing", 8));
  box->setContentsMargins(0, 0, 0, 0);
  const QStringList margins = value("margins").split(u' ', Qt::SkipEmptyParts);
  if (margins.size() == 4) {
    box->setContentsMargins(margins[0].toInt(), margins[1].toInt(), margins[2].toInt(), margins[3].toInt());
  }
  into->addLayout(box, number("stretch", 0));
  readChildren(box);
  if (asTheDesktop && actionStandsFirst(*window_)) turnAround(*box);
}

void Reader::readSpace(QBoxLayout* into) {
  if (!known({"size"})) return;
  if (const int size = number("size", 0); size > 0) {
    into->addSpacing(size);
  } else {
    into->addStretch(1);
  }
  xml_.skipCurrentElement();
}

void Reader::readTabView(QBoxLayout* into) {
  if (!known({"id", "stretch"})) return;
  auto* tabs = new QTabWidget(window_.get());
  registerWidget(tabs);
  place(into, tabs);
  while (xml_.readNextStartElement()) {
    if (xml_.name() != u"page") return fail(QStringLiteral("a tab view holds pages"));
    readPage(tabs);
  }
}

void Reader::readPage(QTabWidget* tabs) {
  if (!known({"title", "focus", "scrolls"})) return;
  auto* page = new QWidget;
  page->setBackgroundRole(QPalette::Base);
  page->setAutoFillBackground(true);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  const QString title = localized("title");
  window_->addPage(page, value("focus"));
  if (value("scrolls") == u"yes") {
    tabs->addTab(new PageScroller(page), title);
  } else {
    tabs->addTab(page, title);
  }
  readChildren(layout);
}

void Reader::readTextField(QBoxLayout* into) {
  if (!known({"id", "name", "text", "style", "lines", "follows", "stretch"})) return;
  auto field = std::make_unique<FieldLabel>(window_.get());
  const QString style = value("style");
  QFont font = field->font();
  if (style == u"title") {
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setWeight(QFont::DemiBold);
    field->setLoses(FieldLabel::Loses::Middle);
  } else if (style == u"lead") {
    font.setPointSizeF(font.pointSizeF() * 1.15);
  } else if (style == u"caption") {
    font.setPointSizeF(font.pointSizeF() * 0.9);
    field->setForegroundRole(QPalette::PlaceholderText);
  } else if (style == u"secondary") {
    field->setForegroundRole(QPalette::PlaceholderText);
  } else if (style == u"path") {
    field->setLeftToRightText(true);
    field->setLoses(FieldLabel::Loses::Middle);
  } else if (style == u"emphasized") {
    font.setWeight(QFont::DemiBold);
  } else if (!style.isEmpty()) {
    return fail(QStringLiteral("unknown style %1").arg(style));
  }
  if (font != field->font()) field->setFont(font);
  field->setMaximumLines(number("lines", 10));
  field->setFieldText(localized("text"));
  registerWidget(field.get());
  if (const QString followed = value("follows"); !followed.isEmpty())
    window_->addFollower(followed, field.get());
  place(into, field.release());
  xml_.skipCurrentElement();
}

void Reader::readImageView(QBoxLayout* into) {
  if (!known({"id", "name", "size", "image", "hidden", "stretch"})) return;
  auto* view = new PictureLabel(number("size", 64), window_.get());
  registerWidget(view);
  if (const Text name = toText(value("image")); !name.isEmpty()) {
    view->setImageSource([find = imageNamed_, name] { return find(name); });
  }
  place(into, view, Qt::AlignTop | Qt::AlignLeading);
  if (value("hidden") == u"yes") view->hide();
  xml_.skipCurrentElement();
}

void Reader::readTextView(QBoxLayout* into) {
  if (!known({"id", "name", "stretch"})) return;
  auto* view = new DocumentView(window_.get());
  registerWidget(view);
  place(into, view);
  xml_.skipCurrentElement();
}

void Reader::readButton(QBoxLayout* into) {
  if (!known({"id", "name", "title", "action", "key", "shape", "stretch"})) return;
  const bool round = value("shape") == u"round";
  auto* button =
      new ActionButton(round ? ActionButton::Shape::Round : ActionButton::Shape::Plain, window_.get());
  registerWidget(button);
  button->setTitle(localized("title"));
  WindowWidget* window = window_.get();
  QObject::connect(button, &QAbstractButton::clicked, window, [window, selector = value("action")] {
    if (window->perform) window->perform(selector);
  });
  if (value("key") == u"return") {
    button->setDefault(true);
    window->setKeyButton(Qt::Key_Return, button);
  } else if (value("key") == u"escape") {
    window->setKeyButton(Qt::Key_Escape, button);
  }
  place(into, button);
  xml_.skipCurrentElement();
}

void Reader::readProgressIndicator(QBoxLayout* into) {
  if (!known({"id", "name", "size", "stretch"})) return;
  auto* spinner = new Spinner(number("size", 22), window_.get());
  registerWidget(spinner);
  place(into, spinner);
  xml_.skipCurrentElement();
}

void Reader::readRule(QBoxLayout* into) {
  if (!known({})) return;
  auto* rule = new QWidget(window_.get());
  rule->setFixedHeight(1);
  rule->setBackgroundRole(QPalette::Midlight);
  rule->setAutoFillBackground(true);
  into->addWidget(rule);
  xml_.skipCurrentElement();
}

void Reader::readElement(QBoxLayout* into) {
  const auto name = xml_.name();
  if (name == u"row") return readBox(into, QBoxLayout::LeftToRight);
  if (name == u"column") return readBox(into, QBoxLayout::TopToBottom);
  if (name == u"space") return readSpace(into);
  if (name == u"tabView") return readTabView(into);
  if (name == u"textField") return readTextField(into);
  if (name == u"imageView") return readImageView(into);
  if (name == u"textView") return readTextView(into);
  if (name == u"button") return readButton(into);
  if (name == u"progressIndicator") return readProgressIndicator(into);
  if (name == u"rule") return readRule(into);
  fail(QStringLiteral("unknown element %1").arg(name));
}

void Reader::readChildren(QBoxLayout* into) {
  if (++depth_ > kDeepest) fail(QStringLiteral("nested too deeply"));
  while (!xml_.hasError() && xml_.readNextStartElement()) readElement(into);
  --depth_;
}

ReadInterface Reader::read() {
  window_ = std::make_unique<WindowWidget>();
  if (xml_.readNextStartElement() && xml_.name() == u"window") {
    if (known({"id", "title", "width", "height", "visibleAtLaunch"})) {
      window_->setWindowTitle(localized("title"));
      window_->visibleAtLaunch = value("visibleAtLaunch") == u"yes";
      window_->setWantedSize({number("width", 640), number("height", 420)});
      auto* layout = new QVBoxLayout(window_.get());
      layout->setContentsMargins(0, 0, 0, 0);
      layout->setSpacing(0);
      readChildren(layout);
      window_->relateCaptions();
    }
  } else {
    fail(QStringLiteral("no window"));
  }
  if (!xml_.hasError()) return {std::move(window_), {}};
  return {nullptr,
          format("line %d: %@", static_cast<long long>(xml_.lineNumber()), toText(xml_.errorString()))};
}

}  // namespace

ReadInterface readInterface(const QByteArray& description, const LocalizedStrings& strings,
                            std::function<ImagePointer(const Text&)> imageNamed) {
  return Reader(description, strings, std::move(imageNamed)).read();
}

}  // namespace halvorn
