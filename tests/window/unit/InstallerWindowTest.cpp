#include "Platform/window/linux/InstallerWindow.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCommonStyle>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextBlock>
#include <fstream>
#include <string>

#include "Platform/window/linux/ActionButton.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "Platform/window/linux/readme/DocumentView.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/support/OffscreenApplication.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

OffscreenApplication& desktop = offscreenApplication();

class InstallerWindowDescription : public testing::Test {
 protected:
  InstallerWindow::Loaded load(const std::string& description) {
    std::ofstream(folder_ / "window.xml", std::ios::binary) << description;
    return InstallerWindow::load(folder_ / "window.xml", strings_, images_);
  }
  InstallerWindow::Loaded loadReal() {
    return InstallerWindow::load(KT_SOURCE_DIR "/Resources/InstallerWindow.xml", strings_, images_);
  }
  // The problem without the path of the file.
  std::string problemOf(const std::string& description) {
    const auto loaded = load(description);
    EXPECT_FALSE(loaded.window);
    const std::string problem = loaded.problem.bytes();
    const auto end = problem.find("window.xml: ");
    return end == std::string::npos ? problem : problem.substr(end + 12);
  }

  TemporaryFolder folder_;
  FakeLocalizedStrings strings_;
  QtImages images_{KT_SOURCE_DIR "/Resources"};
};

TEST_F(InstallerWindowDescription, ThatOfTheResourcesIsComplete) {
  const auto loaded = loadReal();
  ASSERT_TRUE(loaded.window) << loaded.problem.bytes();
  EXPECT_TRUE(loaded.window->widget().visibleAtLaunch);
}

TEST_F(InstallerWindowDescription, TextsAreLookedUpInTheTable) {
  strings_.translations = {{"Install %@", "%@ installieren"}, {"Cancel", "Abbrechen"}};
  const auto loaded = loadReal();
  EXPECT_EQ(loaded.window->outlets().window.title(), "%@ installieren");
  EXPECT_EQ(loaded.window->outlets().cancelButton.title(), "Abbrechen");
}

TEST_F(InstallerWindowDescription, FaultsAreNamedWithTheirLine) {
  EXPECT_EQ(problemOf(""), "line 1: Premature end of document.");
  EXPECT_EQ(problemOf("<plist/>"), "line 1: no window");
  EXPECT_EQ(problemOf("<window>\n<button colour='red'/></window>"),
            "line 2: unknown attribute colour of button");
  EXPECT_EQ(problemOf("<window>\n\n<slider/></window>"), "line 3: unknown element slider");
  EXPECT_EQ(problemOf("<window><button id='a'/><button id='a'/></window>"), "line 1: id a used twice");
  EXPECT_EQ(problemOf("<window><textField style='loud'/></window>"), "line 1: unknown style loud");
  EXPECT_EQ(problemOf("<window><tabView><button/></tabView></window>"), "line 1: a tab view holds pages");
}

TEST_F(InstallerWindowDescription, ADescriptionNestedTooDeeplyIsRefused) {
  std::string deep = "<window>";
  for (int i = 0; i < 100'000; ++i) deep += "<row>";
  EXPECT_NE(problemOf(deep.substr(0, 200'000)).find("nested too deeply"), std::string::npos);
}

TEST_F(InstallerWindowDescription, AWindowWithoutOneOfTheOutletsIsRefused) {
  EXPECT_EQ(problemOf("<window></window>"), "no usable nameField");
  EXPECT_EQ(problemOf("<window><button id='nameField'/></window>"), "no usable nameField")
      << "another kind of view";
}

TEST_F(InstallerWindowDescription, AMissingFileIsAProblem) {
  const auto loaded = InstallerWindow::load(folder_ / "none.xml", strings_, images_);
  EXPECT_FALSE(loaded.window);
  EXPECT_NE(loaded.problem.bytes().find("none.xml: cannot be read"), std::string::npos);
}

TEST_F(InstallerWindowDescription, TheWindowAppearsAtLaunchWhenItsDescriptionSaysSo) {
  const auto loaded = loadReal();
  EXPECT_FALSE(loaded.window->widget().isVisible());
  loaded.window->showIfVisibleAtLaunch();
  EXPECT_TRUE(loaded.window->widget().isVisible());
}

TEST_F(InstallerWindowDescription, ACaptionIsShownWithItsFieldOnly) {
  const auto loaded = loadReal();
  loaded.window->showIfVisibleAtLaunch();
  loaded.window->outlets().tabView.selectItem(1);
  auto* path = loaded.window->widget().find<QWidget>(QStringLiteral("pathField"));
  const QList<QWidget*> captions = loaded.window->widget().followersOf(path);
  ASSERT_EQ(captions.size(), 1);
  EXPECT_TRUE(captions[0]->isVisible());
  loaded.window->outlets().pathField.setHidden(Hidden::Yes);
  EXPECT_FALSE(captions[0]->isVisible());
}

TEST_F(InstallerWindowDescription, TheWindowGrowsWithItsTexts) {
  const auto loaded = loadReal();
  loaded.window->showIfVisibleAtLaunch();
  const int before = loaded.window->widget().height();
  const InstallerOutlets outlets = loaded.window->outlets();
  for (TextField* field :
       {&outlets.nameField, &outlets.introField, &outlets.explanationField, &outlets.pathField}) {
    field->setStringValue(Text(std::string(900, 'w')));
  }
  EXPECT_GT(loaded.window->widget().height(), before);
}

TEST_F(InstallerWindowDescription, ThePageKeysScrollAPageThatIsTooHigh) {
  const auto loaded = loadReal();
  const InstallerOutlets outlets = loaded.window->outlets();
  outlets.explanationField.setStringValue(Text(std::string(9000, 'w')));
  loaded.window->showIfVisibleAtLaunch();
  outlets.tabView.selectItem(1);
  QApplication::processEvents();
  auto* page = loaded.window->widget().findChild<QScrollArea*>();
  ASSERT_NE(page, nullptr);
  const auto press = [&](Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(loaded.window->widget().find<QWidget>(QStringLiteral("installButton")), &event);
    return page->verticalScrollBar()->value();
  };
  const int end = page->verticalScrollBar()->maximum();
  ASSERT_GT(end, 100);
  EXPECT_GT(press(Qt::Key_PageDown), 50);
  EXPECT_EQ(press(Qt::Key_PageUp), 0);
  EXPECT_EQ(press(Qt::Key_End), end);
  EXPECT_EQ(press(Qt::Key_Home), 0);
}

TEST_F(InstallerWindowDescription, TheKeysOfAnyWindowWorkHereToo) {
  const auto loaded = loadReal();
  std::string done;
  loaded.window->setActions({.install = [] {},
                             .cancel = [] {},
                             .openDocumentation = [&] { done += "help "; },
                             .windowClosed = [&] { done += "closed "; },
                             .openLink = [](const Text&) {},
                             .openReadMe = [] {}});
  loaded.window->showIfVisibleAtLaunch();
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(loaded.window->widget().find<QWidget>(QStringLiteral("readMeTextView")), &event);
  };
  press(Qt::Key_F1, Qt::NoModifier);
  EXPECT_EQ(done, "help ");
  loaded.window->outlets().helpButton.setHidden(Hidden::Yes);
  press(Qt::Key_F1, Qt::NoModifier);
  EXPECT_EQ(done, "help ") << "there is none";
  press(Qt::Key_Q, Qt::NoModifier);
  EXPECT_EQ(done, "help ");
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(done, "help closed ");
  loaded.window->widget().show();
  press(Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(done, "help closed closed ");
}

TEST_F(InstallerWindowDescription, ButtonsHaveLettersOfTheirOwnThatPressThem) {
  const auto loaded = loadReal();
  const InstallerOutlets outlets = loaded.window->outlets();
  auto* install = loaded.window->widget().find<ActionButton>(QStringLiteral("installButton"));
  auto* cancel = loaded.window->widget().find<ActionButton>(QStringLiteral("cancelButton"));
  outlets.cancelButton.setTitle("Stop");
  outlets.installButton.setTitle("Start & go");
  EXPECT_EQ(cancel->text(), QStringLiteral("&Stop"));
  EXPECT_EQ(install->text(), QStringLiteral("Start && &go")) << "the first letter of a word";
  EXPECT_EQ(install->shortcut(), QKeySequence(Qt::ALT | Qt::Key_G));
  outlets.cancelButton.setHidden(Hidden::Yes);
  EXPECT_EQ(install->text(), QStringLiteral("&Start && go")) << "the other one does not need it any more";
  EXPECT_EQ(outlets.installButton.title(), Text("Start & go"));
}

// A desktop that has its own order of buttons.
class ActionFirstStyle : public QCommonStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::KdeLayout;
    return QCommonStyle::styleHint(hint, option, widget, data);
  }
};

TEST_F(InstallerWindowDescription, ButtonsStandInTheOrderOfTheDesktop) {
  const auto cancelIsFirst = [this] {
    const auto loaded = loadReal();
    loaded.window->showIfVisibleAtLaunch();
    QApplication::processEvents();
    const auto x = [&](const char* id) {
      return loaded.window->widget()
          .find<QWidget>(QLatin1String(id))
          ->mapTo(&loaded.window->widget(), QPoint(0, 0))
          .x();
    };
    EXPECT_NE(x("cancelButton"), x("installButton"));
    return x("cancelButton") < x("installButton");
  };
  EXPECT_TRUE(cancelIsFirst());
  // A style that was chosen before there was an application belongs to nobody who would delete it.
  QApplication::style()->setParent(qApp);
  QApplication::setStyle(new ActionFirstStyle);
  EXPECT_FALSE(cancelIsFirst());
  QApplication::setStyle(QStringLiteral("fusion"));
}

TEST_F(InstallerWindowDescription, RightToLeftComesFromTheTable) {
  strings_.translations = {{"LayoutDirection", "RTL"}};
  const auto loaded = loadReal();
  EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
  EXPECT_EQ(loaded.window->widget().layoutDirection(), Qt::RightToLeft);
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(InstallerWindowDescription, TheMenuOfTheReadMeIsTranslated) {
  strings_.translations = {{"Select All", "Alles auswählen"}};
  const auto loaded = loadReal();
  EXPECT_EQ(QCoreApplication::translate("QWidgetTextControl", "Select All"),
            QStringLiteral("Alles auswählen"));
  EXPECT_EQ(QCoreApplication::translate("QWidgetTextControl", "Cu&t"), QStringLiteral("Cu&t"));
}

TEST(QtText, ReturnsAreLineEndsAndBrokenBytesAreMarks) {
  EXPECT_EQ(forDisplay("a\rb\r\nc"), QStringLiteral("a\nb\nc"));
  EXPECT_EQ(forDisplay("a\xE4z"), QStringLiteral("a\uFFFDz"));
  EXPECT_EQ(forDisplay("😌"), QStringLiteral("😌"));
}

class DocumentViewLinks : public testing::Test {
 protected:
  DocumentViewLinks() {
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(
        QStringLiteral("<p>a <a href='https://one.example'>one</a> b <a href='file:///etc'>two</a> c "
                       "<a href='mailto:x@example.com'>three</a></p>"));
    view_.showDocument({std::move(document)});
    view_.openLink = [this](const QString& address) { opened_ += address.toStdString() + " "; };
    view_.show();
    view_.setFocus();
    QApplication::processEvents();
  }
  void press(Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&view_, &event);
  }
  DocumentView view_{nullptr};
  std::string opened_;
};

TEST_F(DocumentViewLinks, TabWalksThroughTheLinksAndReturnOpensWebAndMailAddressesOnly) {
  for (int i = 0; i < 3; ++i) {
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
  }
  EXPECT_EQ(opened_, "https://one.example mailto:x@example.com ");
  press(Qt::Key_Backtab);
  EXPECT_EQ(view_.textCursor().selectedText(), QStringLiteral("two"));
}

TEST_F(DocumentViewLinks, AClickOpensTheLinkUnderIt) {
  QTextCursor cursor(view_.document()->find(QStringLiteral("one")));
  cursor.setPosition(cursor.selectionStart() + 1);
  const QPointF spot = view_.cursorRect(cursor).center();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, spot, view_.viewport()->mapToGlobal(spot), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view_.viewport(), &event);
  }
  EXPECT_EQ(opened_, "https://one.example ");
}

TEST_F(DocumentViewLinks, AnotherDocumentTakesThePlaceOfTheFirst) {
  view_.showDocument({});
  EXPECT_TRUE(view_.toPlainText().isEmpty());
  auto next = std::make_unique<QTextDocument>();
  next->setPlainText(QStringLiteral("next"));
  view_.showDocument({std::move(next)});
  EXPECT_EQ(view_.toPlainText(), QStringLiteral("next"));
}

// Its place may have been given to it too low for a line: before the window was laid out.
TEST_F(DocumentViewLinks, ADocumentIsShownFromItsTop) {
  view_.hide();
  QFont large = view_.font();
  large.setPointSize(20);
  view_.setFont(large);
  view_.resize(300, 30);
  auto next = std::make_unique<QTextDocument>();
  next->setPlainText(QStringLiteral("line\n").repeated(100));
  view_.showDocument({std::move(next)});
  view_.resize(300, 200);
  view_.show();
  QApplication::processEvents();
  ASSERT_GT(view_.verticalScrollBar()->maximum(), 0);
  EXPECT_EQ(view_.verticalScrollBar()->value(), 0);
}

TEST_F(DocumentViewLinks, BeforeABeginningALineSaysSoAndLeadsToTheWhole) {
  int opened = 0;
  view_.openWhole = [&opened] { ++opened; };
  for (const auto isWhole : {false, true}) {
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(QStringLiteral("<ul><li>first</ul><p>second"));
    view_.showDocument({std::move(document), isWhole, QStringLiteral("Read Me.rtf")});
    EXPECT_EQ(view_.toPlainText(),
              QString(isWhole ? "" : "Only the beginning of this document is shown here. Read Me.rtf\n") +
                  QStringLiteral("first\nsecond"));
    EXPECT_EQ(view_.document()->firstBlock().textList() != nullptr, isWhole)
        << "the line is no item of a list";
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(opened, 1);
  }
  EXPECT_EQ(opened_, "");
}

// For those who hear the window.
TEST_F(InstallerWindowDescription, TheCaptionOfThePathIsKnownAsItsLabel) {
  const auto loaded = loadReal();
  auto* path = loaded.window->widget().find<QWidget>(QStringLiteral("pathField"));
  QStringList labels;
  for (const auto& [other, relation] : QAccessible::queryAccessibleInterface(path)->relations()) {
    if (relation.testFlag(QAccessible::Label)) labels << other->text(QAccessible::Name);
  }
  EXPECT_EQ(labels, QStringList{"Destination"});
}

// Line by line, as a screen reader follows the caret.
TEST_F(InstallerWindowDescription, TheReadMeHasACaretThatWalksByLines) {
  const auto loaded = loadReal();
  std::ofstream(folder_ / "lines.txt") << "one\ntwo\nthree\n";
  const InstallerOutlets outlets = loaded.window->outlets();
  ASSERT_TRUE(outlets.readMeTextView.setDocumentFromFile(folder_ / "lines.txt"));
  outlets.tabView.selectItem(0);
  loaded.window->showIfVisibleAtLaunch();
  QApplication::processEvents();
  auto* view = loaded.window->widget().find<DocumentView>(QStringLiteral("readMeTextView"));
  view->setFocus();
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, held);
    QApplication::sendEvent(view, &event);
    return view->textCursor().block().text();
  };
  EXPECT_EQ(view->textCursor().block().text(), "one");
  EXPECT_EQ(press(Qt::Key_Down), "two");
  EXPECT_EQ(press(Qt::Key_End, Qt::ControlModifier), "");
  EXPECT_EQ(press(Qt::Key_Up), "three");
  EXPECT_EQ(press(Qt::Key_Home, Qt::ControlModifier), "one");
}

}  // namespace
}  // namespace halvorn
