// What the desktop portal tells of how windows are to look and to move, now and whenever it changes.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>

#include "Platform/color/linux/AppearanceSettings.h"

namespace halvorn {

class AppearanceWatch : public QObject {
  Q_OBJECT

 public:
  // Asks and returns; `told` is called on this thread with every answer, and `silent` when a portal that is there has
  // not answered for two seconds. Without a session bus or a portal nothing is ever told.
  using Told = std::function<void(const AppearanceSettings& settings)>;
  explicit AppearanceWatch(Told told, std::function<void()> silent = {});

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& message);

 private:
  const Told told_;
  AppearanceSettings settings_;
};

}  // namespace halvorn
