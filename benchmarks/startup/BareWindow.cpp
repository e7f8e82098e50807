// The least that a program of the toolkit with such a window can do: as many widgets
// of the same kinds, nothing else.
#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>

namespace {

// Texts, pictures and captions of the install page.
QWidget* installPage() {
  auto* page = new QWidget;
  auto* row = new QHBoxLayout(page);
  row->addWidget(new QLabel(QStringLiteral("Icon")));
  auto* texts = new QVBoxLayout;
  row->addLayout(texts, 1);
  for (const char* text :
       {"Sample 2.1", "Mark", "This program will install Sample on your computer.",
        "If Sample is running, it will be asked to quit.", "Destination", "/opt/Sample", ""}) {
    auto* label = new QLabel(QLatin1String(text));
    label->setWordWrap(true);
    texts->addWidget(label);
  }
  return page;
}

QWidget* readMePage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  auto* text = new QTextEdit;
  text->setReadOnly(true);
  column->addWidget(text);
  return page;
}

}  // namespace

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QWidget window;
  window.setWindowTitle(QStringLiteral("Install Sample"));
  window.resize(660, 420);
  auto* column = new QVBoxLayout(&window);
  auto* tabs = new QTabWidget;
  tabs->addTab(readMePage(), QStringLiteral("Read Me"));
  tabs->addTab(installPage(), QStringLiteral("Install"));
  tabs->setCurrentIndex(1);
  column->addWidget(tabs, 1);
  column->addWidget(new QWidget);  // the rule
  auto* buttons = new QHBoxLayout;
  column->addLayout(buttons);
  buttons->addWidget(new QPushButton(QStringLiteral("?")));
  buttons->addWidget(new QProgressBar);
  buttons->addWidget(new QPushButton(QStringLiteral("Cancel")));
  buttons->addWidget(new QPushButton(QStringLiteral("Install")));
  window.show();
  return QApplication::exec();
}
