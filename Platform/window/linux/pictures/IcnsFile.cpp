// Icon files: a chain of entries, each a four-letter kind, a length and a picture.

#include <QtEndian>
#include <algorithm>
#include <cstring>

#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/pictures/ImageLimits.h"

namespace halvorn {
namespace {

struct Entry {
  QByteArray kind;
  QByteArray whole;  // with its kind and length
  QByteArray picture;
};

// The kinds whose colors and mask are two entries.
struct Pair {
  const char* colors;
  const char* mask;
  int side;
};
constexpr Pair kPairs[] = {
    {"is32", "s8mk", 16}, {"il32", "l8mk", 32}, {"ih32", "h8mk", 48}, {"it32", "t8mk", 128}};

quint32 numberAt(const QByteArray& bytes, qsizetype position) {
  return qFromBigEndian<quint32>(reinterpret_cast<const uchar*>(bytes.constData()) + position);
}

std::vector<Entry> entriesOf(const QByteArray& bytes) {
  std::vector<Entry> entries;
  if (bytes.size() < 8) return entries;
  const qsizetype end = std::min<qsizetype>(bytes.size(), numberAt(bytes, 4));
  for (qsizetype at = 8; at + 8 <= end && static_cast<int>(entries.size()) < kMostIconSizes;) {
    const qsizetype length = numberAt(bytes, at + 4);
    if (length < 8 || length > end - at) break;  // a cut file keeps what came before
    entries.push_back({bytes.mid(at, 4), bytes.mid(at, length), bytes.mid(at + 8, length - 8)});
    at += length;
  }
  return entries;
}

const Entry* find(const std::vector<Entry>& entries, const char* kind) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const Entry& entry) { return entry.kind == QByteArray(kind); });
  return found != entries.end() ? &*found : nullptr;
}

// An icon file of its own with these entries, for the decoder.
QByteArray container(const QByteArray& entries) {
  QByteArray length(4, '\0');
  qToBigEndian<quint32>(static_cast<quint32>(entries.size() + 8), length.data());
  return QByteArray("icns") + length + entries;
}

}  // namespace

std::vector<EncodedImage::Representation> icnsRepresentations(const QByteArray& bytes) {
  const std::vector<Entry> entries = entriesOf(bytes);
  std::vector<EncodedImage::Representation> found;
  for (const Entry& entry : entries) {
    if (entry.picture.size() < 24 || !entry.picture.startsWith("\x89PNG")) continue;
    const quint32 side = std::max(numberAt(entry.picture, 16), numberAt(entry.picture, 20));
    if (side > 0 && side <= static_cast<quint32>(kLargestSide)) {
      found.push_back({static_cast<int>(side), "png", entry.picture});
    }
  }
  for (const Pair& pair : kPairs) {
    const Entry* colors = find(entries, pair.colors);
    if (colors == nullptr) continue;
    const Entry* mask = find(entries, pair.mask);
    found.push_back(
        {pair.side, "icns", container(colors->whole + (mask != nullptr ? mask->whole : QByteArray()))});
  }
  return found;
}

}  // namespace halvorn
