// The installer window in a program of its own that does what it is told on standard input, a command a line,
// and prints what happens to it:
//
//   window_probe BUNDLE LANGUAGE [light|dark|clear|dark-clear|desktop]
//
//   set FIELD TEXT | title BUTTON TEXT | enable BUTTON | disable BUTTON | hide VIEW | show VIEW | image VIEW
//   PATH aqua VIEW | inherit VIEW | document PATH | select INDEX | spin | stop | window CALL | windowTitle
//   TEXT icon PATH | sheet ICON | announce TEXT | screenshot PATH | option | state NAME | still | judge | places |
//   wheel | ink VIEW | terminate
//
// "\n" in a text is a line end. Each command is answered by "done".

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPixmap>
#include <iostream>
#include <map>
#include <optional>
#include <semaphore>
#include <string>
#include <thread>

#include "Core/Paths.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/Palettes.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/QtAlerts.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/QtScreenReader.h"
#include "Platform/window/linux/Spinner.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "tests/window/adapter/ProbeStates.h"
#include "tests/window/adapter/WindowJudge.h"

namespace halvorn {
namespace {

void say(const std::string& line) { std::cout << line << std::endl; }

// Tells of each press of Return that reaches the program, before anybody can take it.
class ReturnWatch : public QObject {
 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (!receiver->isWindowType() || event->type() != QEvent::KeyPress) return false;
    const auto* press = static_cast<const QKeyEvent*>(event);
    if (press->key() == Qt::Key_Return) say("return");
    return false;
  }
};

// How often the wheel's clock ticked, and how often it was painted.
class WheelWatch : public QObject {
 public:
  int ticks = 0;
  int paintings = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Timer) ++ticks;
    if (event->type() == QEvent::Paint) ++paintings;
    return false;
  }
};

class Probe {
 public:
  Probe(QtApplication& application, Images& images, InstallerWindow& window, const LocalizedStrings& strings)
      : application_(application),
        images_(images),
        window_(window),
        outlets_(window.outlets()),
        states_(outlets_, strings, images, alerts_, KT_SOURCE_DIR "/tests/data/window") {
    window_.setActions({.install = [this] { report("install:"); },
                        .cancel = [this] { report("cancel:"); },
                        .openDocumentation = [this] { report("openDocumentation:"); },
                        .windowClosed = [this] { say("closed"), application_.terminate(); },
                        .openLink = [](const Text& url) { say("link " + url.bytes()); },
                        .openReadMe = [this] { report("openReadMe"); }});
    wheel().installEventFilter(&wheelWatch_);
  }

  void obey(const std::string& line) {
    const auto space = line.find(' ');
    const std::string verb = line.substr(0, space);
    const std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
    const auto second = rest.find(' ');
    const std::string name = rest.substr(0, second);
    const Text text = Text(second == std::string::npos ? "" : rest.substr(second + 1)).replacing("\\n", "\n");
    if (!obeyForView(verb, name, text)) obeyForWindow(verb, rest);
    say("done");
  }

 private:
  void report(const std::string& action) {
    say("action " + action + (application_.currentEventHasOptionKey() ? " option" : ""));
  }

  View& view(const std::string& name) {
    const std::map<std::string, View*> views = {{"tabView", &outlets_.tabView},
                                                {"nameField", &outlets_.nameField},
                                                {"introField", &outlets_.introField},
                                                {"pathField", &outlets_.pathField},
                                                {"explanationField", &outlets_.explanationField},
                                                {"messageField", &outlets_.messageField},
                                                {"iconField", &outlets_.iconField},
                                                {"checkmarkField", &outlets_.checkmarkField},
                                                {"readMeTextView", &outlets_.readMeTextView},
                                                {"installButton", &outlets_.installButton},
                                                {"cancelButton", &outlets_.cancelButton},
                                                {"helpButton", &outlets_.helpButton},
                                                {"progressIndicator", &outlets_.progressIndicator}};
    return *views.at(name);
  }
  template <typename Outlet>
  Outlet& outlet(const std::string& name) {
    return dynamic_cast<Outlet&>(view(name));
  }

  bool obeyForView(const std::string& verb, const std::string& name, const Text& text) {
    if (verb == "set") return outlet<TextField>(name).setStringValue(text), true;
    if (verb == "title") return outlet<Button>(name).setTitle(text), true;
    if (verb == "enable") return outlet<Button>(name).setEnabled(Enabled::Yes), true;
    if (verb == "disable") return outlet<Button>(name).setEnabled(Enabled::No), true;
    if (verb == "hide") return view(name).setHidden(Hidden::Yes), true;
    if (verb == "show") return view(name).setHidden(Hidden::No), true;
    if (verb == "image") return outlet<ImageView>(name).setImage(images_.imageFromFile(text)), true;
    if (verb == "aqua") return view(name).setAppearance(AppearanceName::Aqua), true;
    if (verb == "inherit") return view(name).setAppearance(AppearanceName::Inherited), true;
    return false;
  }

  void obeyForWindow(const std::string& verb, const std::string& rest) {
    if (verb == "document")
      say(outlets_.readMeTextView.setDocumentFromFile(Text(rest)) ? "read" : "not read");
    if (verb == "select") outlets_.tabView.selectItem(std::stoi(rest));
    if (verb == "spin") outlets_.progressIndicator.startAnimation();
    if (verb == "stop") outlets_.progressIndicator.stopAnimation();
    if (verb == "windowTitle") outlets_.window.setTitle(Text(rest));
    if (verb == "icon") application_.setApplicationIcon(images_.imageFromFile(Text(rest)));
    if (verb == "sheet") sheet(rest);
    if (verb == "attention") application_.requestUserAttention();
    if (verb == "announce") reader_.announce(Text(rest));
    if (verb == "screenshot") screenshot(rest);
    if (verb == "where") where(rest);
    if (verb == "focus") say("focus " + focus());
    if (verb == "edges") say("edges " + QApplication::palette().color(QPalette::Mid).name().toStdString());
    if (verb == "option") say(application_.currentEventHasOptionKey() ? "option" : "no option");
    if (verb == "state") state(rest);
    if (verb == "still") still();
    if (verb == "judge") judge();
    if (verb == "places") places();
    if (verb == "wheel")
      say("wheel " + std::to_string(wheelWatch_.ticks) + " " + std::to_string(wheelWatch_.paintings));
    if (verb == "ink") ink(rest);
    if (verb == "terminate") application_.terminate();
    if (verb != "window") return;
    if (rest == "show") outlets_.tabView.showWithoutTabsAndBorder();
    if (rest == "atLaunch") window_.showIfVisibleAtLaunch();
    if (rest == "center") outlets_.window.center();
    if (rest == "front") outlets_.window.makeKeyAndOrderFront();
  }

  void sheet(const std::string& icon) {
    AlertDescription alert;
    alert.style = AlertDescription::Style::Informational;
    alert.messageText =
        "Sample 2.1 cannot be installed on this computer because it requires Linux kernel 99.0 or newer.";
    alert.informativeText =
        "To check if an older version of Sample is available for your computer, please visit our software "
        "archive.";
    alert.buttonTitles = {"Quit", "Visit Archive"};
    alert.icon = images_.imageNamed(Text(icon));
    alerts_.beginSheet(alert, [](int code) { say("sheet ended " + std::to_string(code)); });
  }

  void state(const std::string& name) {
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    if (reachedByKey_ != nullptr) reachedByKey_->clearFocus();  // and its ring
    reachedByKey_ = nullptr;
    (void)states_.show(name);
    if (name == "menu") openMenu();
    if (name.rfind("focus-", 0) == 0) {
      const std::string id = name.substr(6) + "Button";
      reachedByKey_ = window_.widget().find<QAbstractButton>(QString::fromStdString(id));
      reachedByKey_->clearFocus();  // who has the keyboard does not get it by a key
      reachedByKey_->setFocus(Qt::TabFocusReason);
    }
  }

  Spinner& wheel() { return *window_.widget().find<Spinner>(QStringLiteral("progressIndicator")); }

  // A wheel that turns is seen at its beginning.
  void still() {
    if (!wheel().isWorking()) return;
    wheel().stop();
    wheel().start();
  }

  // How many pixels of a view are not of the color of its corner.
  void ink(const std::string& id) {
    const QImage image = window_.widget().find<QWidget>(QString::fromStdString(id))->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != image.pixel(0, 0) ? 1 : 0;
    }
    say("ink " + std::to_string(count));
  }

  void openMenu() {
    auto* view = window_.widget().find<QAbstractScrollArea>(QStringLiteral("readMeTextView"))->viewport();
    const QPoint middle = view->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, view->mapToGlobal(middle));
    QApplication::sendEvent(view, &event);
  }

  // With the frame that window managers have around windows, where there is no window manager.
  void judge() {
    constexpr QMargins kFrame(1, 30, 1, 1);
    QCoreApplication::processEvents();
    std::string all;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible() || window->windowType() == Qt::ToolTip) continue;
      for (const std::string& finding : findingsIn(*window, kFrame, reachedByKey_))
        all += (all.empty() ? "" : " | ") + finding;
    }
    say(all.empty() ? "no finding" : all);
  }

  // Where what is shown stands: "id leading-edge top width height", the leading edge being where reading begins.
  void places() {
    const QWidget& window = window_.widget();
    std::string all;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (widget->objectName().isEmpty() || !widget->isVisible()) continue;
      const QRect place(widget->mapTo(&window, QPoint(0, 0)), widget->size());
      const int leading = window.isRightToLeft() ? window.width() - 1 - place.right() : place.left();
      all += widget->objectName().toStdString();
      for (const int number : {leading, place.top(), place.width(), place.height()})
        all += " " + std::to_string(number);
      all += "; ";
    }
    say(all);
  }

  // The middle of a control on the screen.
  void where(const std::string& id) {
    const QWidget* widget = window_.widget().find<QWidget>(QString::fromStdString(id));
    const QPoint middle = widget->mapToGlobal(widget->rect().center());
    say("at " + std::to_string(middle.x()) + " " + std::to_string(middle.y()));
  }

  std::string focus() {
    const QWidget* owner = QApplication::focusWidget();
    return owner == nullptr ? "none" : owner->objectName().toStdString();
  }

  void screenshot(const std::string& path) {
    QWidget* shown = QApplication::activePopupWidget();
    if (shown == nullptr) shown = QApplication::activeModalWidget();
    if (shown == nullptr) shown = &window_.widget();
    QCoreApplication::processEvents();
    say(shown->grab().save(QString::fromStdString(path)) ? "saved" : "not saved");
  }

  QtApplication& application_;
  Images& images_;
  InstallerWindow& window_;
  InstallerOutlets outlets_;
  QtAlerts alerts_{window_};
  QtScreenReader reader_{window_};
  ProbeStates states_;
  WheelWatch wheelWatch_;
  QAbstractButton* reachedByKey_ = nullptr;  // of the state that is shown
};

std::optional<InterfaceStyle> styleNamed(const std::string& name) {
  if (name == "light" || name == "clear") return InterfaceStyle::Light;
  if (name == "dark" || name == "dark-clear") return InterfaceStyle::Dark;
  return std::nullopt;
}

std::optional<Contrast> contrastNamed(const std::string& name) {
  return name.ends_with("clear") ? std::optional(Contrast::High) : std::nullopt;
}

int run(const std::string& program, const std::string& bundle, const std::string& language,
        const std::string& style) {
  QtApplication application{Text(program)};
  ReturnWatch returns;
  qApp->installEventFilter(&returns);
  if (const int points = qEnvironmentVariableIntValue("KT_PROBE_POINTS"); points > 0) {
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
  }
  DesktopAppearance appearance(styleNamed(style), contrastNamed(style));
  appearance.changed = [&] { say(appearance.style() == InterfaceStyle::Dark ? "dark" : "light"); };
  const LinuxLocalizedStrings strings(Text(bundle), {Text(language)});
  const Text resources = Paths::appending(Text(bundle), "Contents/Resources");
  QtImages images(resources);
  const auto loaded =
      InstallerWindow::load(Paths::appending(resources, "InstallerWindow.xml"), strings, images);
  if (!loaded.window) return say(loaded.problem.bytes()), 1;
  Probe probe(application, images, *loaded.window, strings);
  std::binary_semaphore obeyed(0);  // a command may turn the event loop; the next one waits until it is done
  std::thread reader([&] {
    for (std::string line; std::getline(std::cin, line); obeyed.acquire()) {
      application.perform([&probe, &obeyed, line] {
        probe.obey(line);
        obeyed.release();
      });
    }
    application.perform([&application] { application.terminate(); });
  });
  say("ready");
  const int status = application.run();
  reader.detach();  // it waits for input that may never come; the program ends here
  return status;
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) {
  if (count < 3) return 2;
  const int status =
      halvorn::run(arguments[0], arguments[1], arguments[2], count > 3 ? arguments[3] : "light");
  std::quick_exit(status);
}
