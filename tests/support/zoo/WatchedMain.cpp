// A program with a user interface that can be watched. It does what the lines of its input say:
//
//   focus first | focus second | type TEXT | quit
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QSocketNotifier>
#include <cstdio>
#include <iostream>
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
  window.show();
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (!std::getline(std::cin, line) || line == "quit") return QApplication::quit();
    if (line == "focus first") first->setFocus();
    if (line == "focus second") second->setFocus();
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
