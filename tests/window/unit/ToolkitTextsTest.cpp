// The texts that the toolkit brings along: which of them a person can get to see, and whose words they are then.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTextDocument>
#include <QTimer>
#include <memory>
#include <set>
#include <string>

#include "Platform/window/linux/StringsTranslator.h"
#include "Platform/window/linux/readme/DocumentView.h"
#include "tests/support/OffscreenApplication.h"
#include "tests/window/unit/LanguageTables.h"

namespace halvorn {
namespace {

// Answers each key in brackets, so that what was not looked up shows.
class BracketedStrings : public LocalizedStrings {
 public:
  Text localized(const Text& key) const override { return Text("[") + key + Text("]"); }
};

class ToolkitTexts : public testing::Test {
 protected:
  ToolkitTexts() {
    auto document = std::make_unique<QTextDocument>();
    document->setHtml(QStringLiteral("<p><a href='https://one.example'>one</a></p>"));
    view_.showDocument({std::move(document)});
    view_.resize(300, 200);
    view_.show();
    QApplication::processEvents();
  }

  void note(const QList<QAction*>& actions) {
    for (const QAction* action : actions) {
      if (!action->isSeparator()) seen_.insert(action->text().section(u'\t', 0, 0).toStdString());
      const QString shortcut = action->text().section(u'\t', 1, 1);
      if (!shortcut.isEmpty()) seen_.insert((shortcut.section(u']', 0, 0) + u']').toStdString());
    }
  }

  // The menu at that place of the widget: noted as soon as it stands, then put away.
  void openMenuOf(QWidget& widget) {
    bool stood = false;
    QTimer patience;
    QObject::connect(&patience, &QTimer::timeout, &view_, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr) return;
      note(menu->actions());
      stood = true;
      menu->close();
    });
    patience.start(1);
    const QPoint spot = widget.rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, spot, widget.mapToGlobal(spot));
    QApplication::sendEvent(&widget, &event);
    for (int turn = 0; !stood && turn < 1000; ++turn) QApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_TRUE(stood);
  }

  void openEveryMenu() {
    openMenuOf(*view_.viewport());
    openMenuOf(*view_.verticalScrollBar());
    openMenuOf(*view_.horizontalScrollBar());
  }

  const BracketedStrings strings_;
  StringsTranslator translator_{strings_};
  [[maybe_unused]] const bool installed_ = QCoreApplication::installTranslator(&translator_);
  DocumentView view_{nullptr};
  std::set<std::string> seen_;  // and the first key of each shortcut
};

TEST_F(ToolkitTexts, EveryTextOfAMenuIsLookedUpInTheTable) {
  openEveryMenu();
  EXPECT_GT(seen_.size(), 10U);
  for (const std::string& text : seen_) EXPECT_TRUE(text.starts_with("[") && text.ends_with("]")) << text;
}

TEST_F(ToolkitTexts, AreInTheTableAllAndNoOthersAre) {
  openEveryMenu();
  std::set<std::string> wanted;
  for (const std::string& key : textsOfTheToolkit()) wanted.insert("[" + key + "]");
  EXPECT_EQ(seen_, wanted);
  for (const std::string& key : textsOfTheToolkit()) EXPECT_TRUE(englishTable().texts.contains(key)) << key;
}

}  // namespace
}  // namespace halvorn
