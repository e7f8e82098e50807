// What a read-me costs, in a program of its own: reads the document as the window does, shows it and lets the event
// loop come to rest.
//
//   document_probe FILE
//
// Prints four numbers: milliseconds of processor time to read it, to show and paint its beginning, and to come to
// rest after that; megabytes that the program was larger at most than before.
#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include "Platform/window/linux/readme/DocumentView.h"
#include "Platform/window/linux/readme/ReadMeDocument.h"

namespace halvorn {
namespace {

double processorMilliseconds() {
  timespec time = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double megabytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == name && status >> kilobytes) return kilobytes / 1024.0;
  }
  return 0;
}

// Until nothing has used the processor for a while: the toolkit lays out the rest of a document in steps.
void comeToRest() {
  int quiet = 0;
  while (quiet < 5) {
    const double before = processorMilliseconds();
    QEventLoop turn;
    QTimer::singleShot(20, &turn, &QEventLoop::quit);
    turn.exec();
    quiet = processorMilliseconds() - before < 2.0 ? quiet + 1 : 0;
  }
}

int measure(const char* file) {
  QWidget window;
  auto* view = new DocumentView(&window);
  auto* column = new QVBoxLayout(&window);
  column->addWidget(view);
  window.resize(660, 420);
  window.show();
  QCoreApplication::processEvents();
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak counts from here
  const double start = megabytes("VmRSS:");
  const double begun = processorMilliseconds();
  auto read = readMeDocument(file);
  if (!read.document) return std::puts("not read"), 1;
  const double done = processorMilliseconds();
  view->showDocument(std::move(read));
  window.repaint();
  QCoreApplication::processEvents();
  const double shown = processorMilliseconds();
  comeToRest();
  const double rested = processorMilliseconds();
  std::printf("%.1f %.1f %.1f %.1f\n", done - begun, shown - done, rested - shown,
              megabytes("VmHWM:") - start);
  return 0;
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) {
  if (count != 2) return 2;
  QApplication application(count, arguments);
  return halvorn::measure(arguments[1]);
}
