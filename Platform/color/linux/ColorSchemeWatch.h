// The color-scheme setting of the desktop portal, now and whenever it changes.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <optional>

namespace halvorn {

class ColorSchemeWatch : public QObject {
  Q_OBJECT

 public:
  // Asks and returns; `report` is called on this thread with every answer, and `silent` when a portal that is there
  // has not answered for two seconds. Without a session bus or a portal nothing is ever reported.
  explicit ColorSchemeWatch(std::function<void(bool prefersDark)> report, std::function<void()> silent = {});

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& message);

 private:
  void take(std::optional<bool> prefersDark);

  std::function<void(bool)> report_;
};

}  // namespace halvorn
