// Reads bytes of an unknown encoding.
#pragma once

#include <QByteArray>
#include <QString>

namespace halvorn {

// By the byte order mark; else UTF-8 when it is valid; else UTF-16 when every second byte tends to be zero;
// else Windows Latin, in which every byte means something. The mark itself is no part of the text.
[[nodiscard]] QString decodeGuessing(const QByteArray& bytes);

}  // namespace halvorn
