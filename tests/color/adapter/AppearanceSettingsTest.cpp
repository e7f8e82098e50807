// What desktops call darkness, contrast and stillness.
#include "Platform/color/linux/AppearanceSettings.h"

#include <gtest/gtest.h>

#include <QDBusVariant>
#include <vector>

namespace halvorn {
namespace {

constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kGnome[] = "org.gnome.desktop.interface";
constexpr char kGnomeForAll[] = "org.gnome.desktop.a11y.interface";
constexpr char kKde[] = "org.kde.kdeglobals.KDE";
constexpr char kKdeGeneral[] = "org.kde.kdeglobals.General";

void change(AppearanceSettings& settings, const QString& group, const QString& key, const QVariant& value) {
  QDBusMessage message =
      QDBusMessage::createSignal("/p", "org.freedesktop.portal.Settings", "SettingChanged");
  message << group << key << QVariant::fromValue(QDBusVariant(value));
  settings.take(message);
}

// The letters of what is preferred: dark, contrast, still.
std::string preferred(const AppearanceSettings& settings) {
  return std::string(settings.prefersDark() ? "d" : "") + (settings.prefersContrast() ? "c" : "") +
         (settings.prefersStillness() ? "s" : "");
}

TEST(AppearanceSettings, EachDesktopsOwnNameForAWishIsUnderstood) {
  const struct {
    const char* group;
    const char* key;
    QVariant value;
    std::string expected;
  } rows[] = {
      {kAppearance, "color-scheme", 1U, "d"},
      {kAppearance, "color-scheme", 2U, ""},
      {kAppearance, "color-scheme", 7U, ""},
      {kAppearance, "color-scheme", "nonsense", ""},
      {kAppearance, "contrast", 1U, "c"},
      {kAppearance, "contrast", 0U, ""},
      {kAppearance, "reduced-motion", 1U, "s"},
      {kAppearance, "reduced-motion", 0U, ""},
      {kGnome, "enable-animations", false, "s"},
      {kGnome, "enable-animations", true, ""},
      {kGnome, "enable-animations", "nonsense", ""},
      {kGnome, "gtk-theme", "HighContrast", "c"},
      {kGnome, "gtk-theme", "HighContrastInverse", "dc"},
      {kGnome, "gtk-theme", "ContrastHigh", "c"},
      {kGnome, "gtk-theme", "Adwaita", ""},
      {kGnome, "gtk-theme", "Inverse", ""},
      {kGnomeForAll, "high-contrast", true, "c"},
      {kGnomeForAll, "high-contrast", false, ""},
      {kKdeGeneral, "ColorScheme", "BreezeHighContrast", "c"},
      {kKdeGeneral, "ColorScheme", "Breeze High Contrast", "c"},
      {kKdeGeneral, "ColorScheme", "BreezeLight", ""},
      {kKde, "AnimationDurationFactor", "0", "s"},
      {kKde, "AnimationDurationFactor", "0.5", ""},
      {kKde, "AnimationDurationFactor", "", ""},
      {"org.example", "contrast", 1U, ""},
      {kAppearance, "accent-color", 1U, ""},
  };
  for (const auto& row : rows) {
    AppearanceSettings settings;
    change(settings, row.group, row.key, row.value);
    EXPECT_EQ(preferred(settings), row.expected) << row.key << " " << row.value.toString().toStdString();
  }
}

TEST(AppearanceSettings, AWishTakenBackInOnePlaceHoldsAsLongAsAnotherHasIt) {
  AppearanceSettings settings;
  change(settings, kAppearance, "contrast", 1U);
  change(settings, kGnome, "gtk-theme", "HighContrast");
  change(settings, kAppearance, "contrast", 0U);
  EXPECT_EQ(preferred(settings), "c");
  change(settings, kGnome, "gtk-theme", "Adwaita");
  EXPECT_EQ(preferred(settings), "");
}

TEST(AppearanceSettings, LightThatIsAskedForWinsOverADarkTheme) {
  AppearanceSettings settings;
  change(settings, kGnome, "gtk-theme", "HighContrastInverse");
  change(settings, kAppearance, "color-scheme", 2U);
  EXPECT_EQ(preferred(settings), "c");
}

TEST(AppearanceSettings, MessagesOfOtherShapesChangeNothing) {
  AppearanceSettings settings;
  change(settings, kAppearance, "color-scheme", 1U);
  settings.take(QDBusMessage::createSignal("/p", "org.freedesktop.portal.Settings", "SettingChanged"));
  settings.takeAll({});
  settings.takeAll({QVariant(7)});
  EXPECT_EQ(preferred(settings), "d");
}

}  // namespace
}  // namespace halvorn
