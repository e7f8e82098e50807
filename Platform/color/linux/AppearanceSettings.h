// What the settings of a desktop say of how windows are to look and to move, under whichever names desktops keep that.
// The desktop portal hands all of them out.
#pragma once

#include <QDBusMessage>
#include <QVariantList>
#include <array>
#include <cstddef>
#include <optional>

namespace halvorn {

class AppearanceSettings {
 public:
  // To be sent to the portal: asks for all of them at once.
  [[nodiscard]] static QDBusMessage question();
  // Takes what the arguments of its reply say.
  void takeAll(const QVariantList& reply);
  // Takes what the portal's message of a change says, if it is about one of them.
  void take(const QDBusMessage& change);

  // What no setting asks for, or all leave open, is false.
  [[nodiscard]] bool prefersDark() const { return isPreferred(Wish::Dark); }
  [[nodiscard]] bool prefersContrast() const { return isPreferred(Wish::Contrast); }
  [[nodiscard]] bool prefersStillness() const { return isPreferred(Wish::Stillness); }

 private:
  enum class Wish { Dark, Contrast, Stillness };
  struct Setting;
  static constexpr std::size_t kSettings = 9;
  static const std::array<Setting, kSettings>& all();
  void take(const QString& group, const QString& key, const QVariant& value);
  [[nodiscard]] bool isPreferred(Wish wish) const;

  std::array<std::optional<bool>, kSettings> opinions_;  // of the settings, in their order
};

}  // namespace halvorn
