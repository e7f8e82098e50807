// How the desktop portal is asked for settings, and what it tells of the one for dark and light.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantList>
#include <optional>

namespace halvorn::ColorSchemeSetting {

// To be sent to the portal.
[[nodiscard]] QDBusMessage question();
// The same for all settings of some groups; the reply is a{sa{sv}}.
[[nodiscard]] QDBusMessage questionForAll(const QStringList& groups);
// The value of a setting, in however many variants it was told.
[[nodiscard]] QVariant unwrapped(QVariant value);
// What the arguments of the reply to the one question say; nullopt when they say nothing. Schemes that
// nobody knows are no preference.
[[nodiscard]] std::optional<bool> prefersDark(const QVariantList& reply);

// Has every change of any setting told to a slot that takes the QDBusMessage.
void listen(QDBusConnection& bus, QObject* receiver, const char* slot);
// What such a message says of this setting; nullopt when it is about another one.
[[nodiscard]] std::optional<bool> prefersDark(const QDBusMessage& change);

}  // namespace halvorn::ColorSchemeSetting
