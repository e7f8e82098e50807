// Takes a picture file apart into its sizes without decoding them.
#pragma once

#include <QByteArray>
#include <memory>

#include "Platform/window/linux/pictures/QtImage.h"

namespace halvorn {

// The picture in the bytes: icns with all its sizes, svg, png, jpeg, gif, bmp, webp, ico, tiff. Null when the
// format is none of these, nothing in it can be decoded, or it would cost more than a picture may.
[[nodiscard]] std::shared_ptr<const EncodedImage> imageFromBytes(const QByteArray& bytes);

// The entries of an icon file that hold pictures; empty when the container is broken.
[[nodiscard]] std::vector<EncodedImage::Representation> icnsRepresentations(const QByteArray& bytes);

// Whether a drawing can be given to the renderer: bounded depth, elements and repetitions, and no reference
// to anything outside its own text. The renderer itself would read local files that a drawing names.
[[nodiscard]] bool isHarmlessDrawing(const QByteArray& svg);

}  // namespace halvorn
