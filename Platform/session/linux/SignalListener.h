// Hears the signals of a bus that it is connected to, by its slot.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>

namespace halvorn {

class SignalListener : public QObject {
  Q_OBJECT

 public:
  std::function<void(const QDBusMessage& signal)> heardSignal;

 public Q_SLOTS:
  void heard(const QDBusMessage& message) {
    if (heardSignal) heardSignal(message);
  }
};

}  // namespace halvorn
