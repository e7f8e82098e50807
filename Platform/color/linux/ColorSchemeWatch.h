// What the desktop portal tells of a window's look, now and whenever it changes.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <optional>

namespace halvorn {

class ColorSchemeWatch : public QObject {
  Q_OBJECT

 public:
  // Asks and returns; what `report` has is called on this thread with every answer, and `silent` when a portal that is there
  // has not answered for two seconds. Without a session bus or a portal nothing is ever reported.
  struct Report {
    std::function<void(bool prefersDark)> scheme;
    std::function<void(bool prefersContrast)> contrast;
  };
  explicit ColorSchemeWatch(Report report, std::function<void()> silent = {});

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& message);

 private:
  Report report_;
};

}  // namespace halvorn
