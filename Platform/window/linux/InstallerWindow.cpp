#include "Platform/window/linux/InstallerWindow.h"

#include <QGuiApplication>
#include <utility>

#include "Core/Format.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/window/linux/AccessibleRoles.h"
#include "Platform/window/linux/InterfaceReader.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/QtViews.h"
#include "Platform/window/linux/StringsTranslator.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestDescription = 256UL * 1024;

// The name of the first outlet that the window lacks, or has as another kind of view; "" when all are there.
QString missingOutlet(const WindowWidget& window) {
  for (const char* id : {"nameField", "introField", "pathField", "explanationField", "messageField"}) {
    if (window.find<FieldLabel>(QLatin1String(id)) == nullptr) return QLatin1String(id);
  }
  for (const char* id : {"installButton", "cancelButton", "helpButton"}) {
    if (window.find<ActionButton>(QLatin1String(id)) == nullptr) return QLatin1String(id);
  }
  for (const char* id : {"iconField", "checkmarkField"}) {
    if (window.find<PictureLabel>(QLatin1String(id)) == nullptr) return QLatin1String(id);
  }
  const auto* tabs = window.find<QTabWidget>(QStringLiteral("tabView"));
  if (tabs == nullptr || tabs->count() != 2) return QStringLiteral("tabView");
  if (window.find<DocumentView>(QStringLiteral("readMeTextView")) == nullptr)
    return QStringLiteral("readMeTextView");
  if (window.find<Spinner>(QStringLiteral("progressIndicator")) == nullptr)
    return QStringLiteral("progressIndicator");
  return {};
}

}  // namespace

struct InstallerWindow::Parts {
  Parts(std::unique_ptr<WindowWidget> read, const LocalizedStrings& strings)
      : translator(strings), widget(std::move(read)) {
    QCoreApplication::installTranslator(&translator);
  }

  template <typename Widget>
  Widget& named(const char* id) {
    return *widget->find<Widget>(QLatin1String(id));
  }

  StringsTranslator translator;  // takes itself out when it ends
  std::unique_ptr<WindowWidget> widget;
  InstallerActions actions;
  QtWindow window{*widget};
  QtTabView tabView{*widget, named<QTabWidget>("tabView")};
  QtTextField nameField{*widget, named<FieldLabel>("nameField")};
  QtTextField introField{*widget, named<FieldLabel>("introField")};
  QtTextField pathField{*widget, named<FieldLabel>("pathField")};
  QtTextField explanationField{*widget, named<FieldLabel>("explanationField")};
  QtTextField messageField{*widget, named<FieldLabel>("messageField")};
  QtImageView iconField{*widget, named<PictureLabel>("iconField")};
  QtImageView checkmarkField{*widget, named<PictureLabel>("checkmarkField")};
  QtTextView readMeTextView{*widget, named<DocumentView>("readMeTextView")};
  QtButton installButton{*widget, named<ActionButton>("installButton")};
  QtButton cancelButton{*widget, named<ActionButton>("cancelButton")};
  QtButton helpButton{*widget, named<ActionButton>("helpButton")};
  QtProgressIndicator progressIndicator{*widget, named<Spinner>("progressIndicator")};
};

InstallerWindow::Loaded InstallerWindow::load(const Text& descriptionPath, const LocalizedStrings& strings,
                                              Images& images) {
  const auto description = readRegularFile(descriptionPath.bytes(), kLargestDescription);
  if (!description) return {nullptr, format("%@: cannot be read", descriptionPath)};
  installAccessibleRoles();
  if (strings.localized("LayoutDirection") == "RTL") QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  ReadInterface read = readInterface(QByteArray::fromStdString(*description), strings,
                                     [&images](const Text& name) { return images.imageNamed(name); });
  if (!read.window) return {nullptr, format("%@: %@", descriptionPath, read.problem)};
  if (const QString missing = missingOutlet(*read.window); !missing.isEmpty()) {
    return {nullptr, format("%@: no usable %@", descriptionPath, toText(missing))};
  }
  auto parts = std::make_unique<Parts>(std::move(read.window), strings);
  return {std::unique_ptr<InstallerWindow>(new InstallerWindow(std::move(parts))), {}};
}

InstallerWindow::InstallerWindow(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {
  const auto call = [](const std::function<void()>& action) {
    if (action) action();
  };
  Parts* all = parts_.get();
  all->widget->perform = [all, call](const QString& selector) {
    if (selector == u"install:") call(all->actions.install);
    if (selector == u"cancel:") call(all->actions.cancel);
    if (selector == u"openDocumentation:") call(all->actions.openDocumentation);
  };
  all->widget->closed = [all, call] { call(all->actions.windowClosed); };
  all->named<DocumentView>("readMeTextView").openLink = [all](const QString& address) {
    if (all->actions.openLink) all->actions.openLink(toText(address));
  };
  all->named<DocumentView>("readMeTextView").openWhole = [all, call] { call(all->actions.openReadMe); };
}

InstallerWindow::~InstallerWindow() = default;

InstallerOutlets InstallerWindow::outlets() {
  Parts& all = *parts_;
  return {all.window,           all.tabView,      all.nameField,  all.introField,       all.pathField,
          all.explanationField, all.messageField, all.iconField,  all.checkmarkField,   all.readMeTextView,
          all.installButton,    all.cancelButton, all.helpButton, all.progressIndicator};
}

void InstallerWindow::setActions(InstallerActions actions) { parts_->actions = std::move(actions); }

void InstallerWindow::showIfVisibleAtLaunch() {
  if (parts_->widget->visibleAtLaunch && !parts_->widget->isVisible()) parts_->window.makeKeyAndOrderFront();
}

void InstallerWindow::hide() { parts_->widget->hide(); }

WindowWidget& InstallerWindow::widget() { return *parts_->widget; }

}  // namespace halvorn
