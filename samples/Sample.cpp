// A small product to install: one window that says which version it is.
//
// The version is the text of Contents/Resources/version.txt of the bundle around the program. With
// SAMPLE_REPORT set, the program appends "started <version>" and "ended <version>" to that file.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QString versionOf(const QString& programFolder) {
  QFile file(QDir(programFolder).filePath("../Resources/version.txt"));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(64)).trimmed() : QString("?");
}

void report(const QString& event) {
  const QByteArray path = qgetenv("SAMPLE_REPORT");
  QFile file(QFile::decodeName(path));
  if (!path.isEmpty() && file.open(QIODevice::Append)) file.write(event.toUtf8() + "\n");
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QString version = versionOf(QCoreApplication::applicationDirPath());

  QWidget window;
  window.setWindowTitle("Sample " + version);
  auto* layout = new QVBoxLayout(&window);
  auto* title = new QLabel("Sample " + version);
  QFont large = title->font();
  large.setPointSizeF(large.pointSizeF() * 2);
  title->setFont(large);
  layout->addWidget(title, 0, Qt::AlignCenter);
  layout->addWidget(new QLabel("A product that has nothing to do but run."), 0, Qt::AlignCenter);
  window.resize(360, 160);
  window.show();

  report("started " + version);
  const int status = QApplication::exec();
  report("ended " + version);
  return status;
}
