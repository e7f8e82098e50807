// What the desktop portal tells of a window's look, dark or light and with how much contrast: how it is asked for, and
// what the answers mean.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>
#include <optional>

namespace halvorn::ColorSchemeSetting {

// To be sent to the portal.
[[nodiscard]] QDBusMessage question();
[[nodiscard]] QDBusMessage questionForContrast();
// What the arguments of its reply say; nullopt when they say nothing. Schemes that
// nobody knows are no preference.
[[nodiscard]] std::optional<bool> prefersDark(const QVariantList& reply);
[[nodiscard]] std::optional<bool> prefersContrast(const QVariantList& reply);

// Has every change of any setting told to a slot that takes the QDBusMessage.
void listen(QDBusConnection& bus, QObject* receiver, const char* slot);
// What such a message says of this setting; nullopt when it is about another one.
[[nodiscard]] std::optional<bool> prefersDark(const QDBusMessage& change);
[[nodiscard]] std::optional<bool> prefersContrast(const QDBusMessage& change);

}  // namespace halvorn::ColorSchemeSetting
