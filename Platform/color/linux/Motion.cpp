#include "Platform/color/linux/Motion.h"

#include <QCoreApplication>
#include <QVariant>

namespace halvorn {
namespace {

constexpr char kIsReduced[] =
    "halvornMotionIsReduced";  // a property of the application, which is asked where things move

}  // namespace

Motion widgetsMotion() {
  return QCoreApplication::instance()->property(kIsReduced).toBool() ? Motion::Reduced : Motion::Usual;
}

void setWidgetsMotion(Motion motion) {
  QCoreApplication::instance()->setProperty(kIsReduced, motion == Motion::Reduced);
}

}  // namespace halvorn
