#include "Platform/color/linux/AppearanceSettings.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QMap>
#include <QStringList>

#include "Platform/color/linux/ColorSchemeSetting.h"

namespace halvorn {
namespace {

using Opinion = std::optional<bool>;

constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kGnome[] = "org.gnome.desktop.interface";
constexpr char kGnomeForAll[] = "org.gnome.desktop.a11y.interface";
constexpr char kKde[] = "org.kde.kdeglobals.KDE";
constexpr char kKdeGeneral[] = "org.kde.kdeglobals.General";

Opinion schemeIsDark(const QVariant& value) {
  const uint scheme = value.toUInt();
  return scheme == 1 ? Opinion(true) : scheme == 2 ? Opinion(false) : std::nullopt;
}

Opinion isOne(const QVariant& value) { return value.toUInt() == 1 ? Opinion(true) : std::nullopt; }

Opinion isTrue(const QVariant& value) { return value.toBool() ? Opinion(true) : std::nullopt; }

Opinion isFalse(const QVariant& value) {
  const bool isBoolean = value.metaType() == QMetaType::fromType<bool>();
  return isBoolean && !value.toBool() ? Opinion(true) : std::nullopt;
}

// How much longer than usual animations take; told as a text.
Opinion isNoTime(const QVariant& value) {
  bool isNumber = false;
  return value.toDouble(&isNumber) == 0.0 && isNumber ? Opinion(true) : std::nullopt;
}

// "HighContrast", "Breeze High Contrast", "ContrastHighInverse".
Opinion themeIsClear(const QVariant& value) {
  const QString name = value.toString().remove(u' ').remove(u'-');
  const bool isClear = name.contains(QLatin1String("HighContrast"), Qt::CaseInsensitive) ||
                       name.contains(QLatin1String("ContrastHigh"), Qt::CaseInsensitive);
  return isClear ? Opinion(true) : std::nullopt;
}

Opinion themeIsClearAndDark(const QVariant& value) {
  const bool isInverse = value.toString().contains(QLatin1String("Inverse"), Qt::CaseInsensitive);
  return isInverse ? themeIsClear(value) : std::nullopt;
}

}  // namespace

struct AppearanceSettings::Setting {
  Wish wish;
  const char* group;
  const char* key;
  Opinion (*opinionOf)(const QVariant& value);  // nullopt: leaves it open
};

// Of several for one wish the first that does not leave it open counts.
auto AppearanceSettings::all() -> const std::array<Setting, kSettings>& {
  static const std::array<Setting, kSettings> settings = {{
      {Wish::Dark, kAppearance, "color-scheme", schemeIsDark},
      {Wish::Dark, kGnome, "gtk-theme", themeIsClearAndDark},
      {Wish::Contrast, kAppearance, "contrast", isOne},
      {Wish::Contrast, kGnomeForAll, "high-contrast", isTrue},
      {Wish::Contrast, kGnome, "gtk-theme", themeIsClear},
      {Wish::Contrast, kKdeGeneral, "ColorScheme", themeIsClear},
      {Wish::Stillness, kAppearance, "reduced-motion", isOne},
      {Wish::Stillness, kGnome, "enable-animations", isFalse},
      {Wish::Stillness, kKde, "AnimationDurationFactor", isNoTime},
  }};
  return settings;
}

QDBusMessage AppearanceSettings::question() {
  return ColorSchemeSetting::questionForAll({kAppearance, kGnome, kGnomeForAll, kKde, kKdeGeneral});
}

void AppearanceSettings::takeAll(const QVariantList& reply) {
  if (reply.isEmpty() || !reply.front().canConvert<QDBusArgument>()) return;
  const auto argument = reply.front().value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("a{sa{sv}}")) return;
  QMap<QString, QVariantMap> groups;
  argument >> groups;
  for (auto group = groups.begin(); group != groups.end(); ++group) {
    for (auto each = group->begin(); each != group->end(); ++each)
      take(group.key(), each.key(), each.value());
  }
}

void AppearanceSettings::take(const QDBusMessage& change) {
  const QVariantList values = change.arguments();
  if (values.size() == 3) take(values[0].toString(), values[1].toString(), values[2]);
}

void AppearanceSettings::take(const QString& group, const QString& key, const QVariant& value) {
  for (std::size_t i = 0; i < all().size(); ++i) {
    const Setting& setting = all()[i];
    if (group == QLatin1String(setting.group) && key == QLatin1String(setting.key))
      opinions_[i] = setting.opinionOf(ColorSchemeSetting::unwrapped(value));
  }
}

bool AppearanceSettings::isPreferred(Wish wish) const {
  for (std::size_t i = 0; i < all().size(); ++i) {
    if (all()[i].wish == wish && opinions_[i]) return *opinions_[i];
  }
  return false;
}

}  // namespace halvorn
