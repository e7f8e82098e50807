// Hears of changed settings of the desktop portal.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>

namespace halvorn {

class SettingListener : public QObject {
  Q_OBJECT

 public:
  std::function<void(const QDBusMessage& change)> changed;

 public Q_SLOTS:
  void heard(const QDBusMessage& message) {
    if (changed) changed(message);
  }
};

}  // namespace halvorn
