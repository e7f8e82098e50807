// Hears of changed settings of the desktop portal.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace halvorn {

class SettingListener : public QObject {
  Q_OBJECT

 public:
  std::function<void(const QString& group, const QString& key)> changed;

 public Q_SLOTS:
  void heard(const QDBusMessage& message) {
    const QVariantList values = message.arguments();
    if (changed && values.size() == 3) changed(values[0].toString(), values[1].toString());
  }
};

}  // namespace halvorn
