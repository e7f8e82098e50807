// Decodes PNG pictures with the PNG library alone. The toolkit's reader asks every image format that is
// installed whether it knows the picture, and loads its libraries for that, before the window is painted.
#pragma once

#include <QImage>

namespace halvorn {

// The picture; null when the bytes are broken or a side is longer than a picture may have. Thread: any.
[[nodiscard]] QImage decodePng(const QByteArray& bytes);

}  // namespace halvorn
