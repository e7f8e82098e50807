// A program with a user interface that can be watched. It does what the lines of its input say:
//
//   focus first | focus second | type TEXT | check on | check off | rename a | rename b | mark all | mark none
//   row 0 | row 1 | open | close | quit
#include <QApplication>
#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QSocketNotifier>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QWidget window;
  window.setWindowTitle("Watched");
  auto* layout = new QFormLayout(&window);
  auto* first = new QLineEdit;
  auto* second = new QLineEdit;
  layout->addRow("First", first);
  layout->addRow("Second", second);
  auto* check = new QCheckBox("Check");
  auto* rows = new QListWidget;
  rows->addItems({"One", "Two"});
  layout->addRow(check);
  layout->addRow(rows);
  window.show();
  std::unique_ptr<QWidget> other;
  const auto openOther = [&] {
    other = std::make_unique<QWidget>();
    other->setWindowTitle("Other");
    other->show();
  };
  QApplication::setQuitOnLastWindowClosed(false);
  const std::map<std::string, std::function<void()>> commands = {
      {"focus first", [&] { first->setFocus(); }},
      {"focus second", [&] { second->setFocus(); }},
      {"check on", [&] { check->setChecked(true); }},
      {"check off", [&] { check->setChecked(false); }},
      {"rename a", [&] { check->setText("A"); }},
      {"rename b", [&] { check->setText("B"); }},
      {"mark all", [&] { first->selectAll(); }},
      {"mark none", [&] { first->deselect(); }},
      {"row 0", [&] { rows->setCurrentRow(0); }},
      {"row 1", [&] { rows->setCurrentRow(1); }},
      {"open", openOther},
      {"close", [&] { other = nullptr; }}};
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (!std::getline(std::cin, line) || line == "quit") return QApplication::quit();
    if (const auto found = commands.find(line); found != commands.end()) found->second();
    if (line.rfind("type ", 0) == 0) first->setText(QString::fromStdString(line.substr(5)));
    std::printf("done %s\n", line.c_str());
    std::fflush(stdout);
  });
  // Focus means nothing before the window is the active one.
  bool isReady = false;
  QObject::connect(&application, &QApplication::focusChanged, [&](QWidget*, QWidget* now) {
    if (now == nullptr || std::exchange(isReady, true)) return;
    std::puts("ready");
    std::fflush(stdout);
  });
  return QApplication::exec();
}
