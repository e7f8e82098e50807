#include "Platform/bundles/linux/BinaryPropertyList.h"

#include <bit>
#include <string>
#include <utility>
#include <vector>

namespace halvorn {
namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTrailerSize = 32;
constexpr double kSecondsFrom1970To2001 = 978'307'200.0;

// The file: "bplist00", the objects, the table of their offsets, the trailer. An object
// begins with a byte whose upper half is its kind and whose lower half is its size, 15 for a
// size that follows as an integer object.
class BinaryReader {
 public:
  BinaryReader(std::string_view bytes, const PropertyListLimits& limits) : bytes_(bytes), budget_(limits) {}

  std::optional<PropertyValue> read() {
    if (bytes_.size() < kHeaderSize + kTrailerSize) return std::nullopt;
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offsetSize_ = byteAt(trailer + 6);
    referenceSize_ = byteAt(trailer + 7);
    objectCount_ = numberAt(trailer + 8, 8);
    const std::uint64_t top = numberAt(trailer + 16, 8);
    const std::uint64_t table = numberAt(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) return std::nullopt;
    if (table < kHeaderSize || table > trailer || objectCount_ > (trailer - table) / offsetSize_) {
      return std::nullopt;
    }
    table_ = static_cast<std::size_t>(table);
    texts_.resize(static_cast<std::size_t>(objectCount_));
    return object(top, 1);
  }

 private:
  // Where the bytes of an object lie.
  struct Extent {
    std::size_t start = 0;
    std::size_t count = 0;
  };

  std::uint8_t byteAt(std::size_t position) const { return static_cast<std::uint8_t>(bytes_[position]); }
  // Big-endian. The range is the caller's to check.
  std::uint64_t numberAt(std::size_t position, std::size_t size) const {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) number = number << 8 | byteAt(position + i);
    return number;
  }

  std::optional<PropertyValue> object(std::uint64_t index, int depth) {
    if (index >= objectCount_ || !budget_.allowsDepth(depth)) return std::nullopt;
    const std::uint64_t offset =
        numberAt(table_ + static_cast<std::size_t>(index) * offsetSize_, offsetSize_);
    if (offset < kHeaderSize || offset >= table_) return std::nullopt;
    const auto position = static_cast<std::size_t>(offset);
    switch (byteAt(position) >> 4) {
      case 0x0:
        return boolean(byteAt(position));
      case 0x1:
        return integer(position);
      case 0x2:
        return real(position);
      case 0x3:
        return date(position);
      case 0x4:
        return data(position);
      case 0x5:
      case 0x6:
      case 0x7:
        return text(position, static_cast<std::size_t>(index));
      case 0xA:
        return array(position, depth);
      case 0xD:
        return dictionary(position, depth);
      default:
        return std::nullopt;
    }
  }

  std::optional<PropertyValue> boolean(std::uint8_t marker) {
    if ((marker != 0x08 && marker != 0x09) || !budget_.spend()) return std::nullopt;
    return PropertyValue(marker == 0x09);
  }

  std::optional<PropertyValue> integer(std::size_t position) {
    const std::size_t size = std::size_t{1} << (byteAt(position) & 0x0F);
    if (size > 16 || !fits(position + 1, size) || !budget_.spend()) return std::nullopt;
    // Up to four bytes are unsigned. Sixteen hold what does not fit eight signed
    // ones, so their upper half is 0.
    if (size == 16) {
      const std::uint64_t low = numberAt(position + 9, 8);
      if (numberAt(position + 1, 8) != 0) return std::nullopt;
      if (low > static_cast<std::uint64_t>(INT64_MAX)) return PropertyValue(static_cast<double>(low));
      return PropertyValue(static_cast<std::int64_t>(low));
    }
    return PropertyValue(static_cast<std::int64_t>(numberAt(position + 1, size)));
  }

  std::optional<double> realAt(std::size_t position) {
    const std::size_t size = std::size_t{1} << (byteAt(position) & 0x0F);
    if ((size != 4 && size != 8) || !fits(position + 1, size) || !budget_.spend()) return std::nullopt;
    const std::uint64_t bits = numberAt(position + 1, size);
    return size == 8 ? std::bit_cast<double>(bits) : std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  }
  std::optional<PropertyValue> real(std::size_t position) {
    const auto value = realAt(position);
    return value ? std::optional(PropertyValue(*value)) : std::nullopt;
  }
  std::optional<PropertyValue> date(std::size_t position) {
    const auto value = byteAt(position) == 0x33 ? realAt(position) : std::nullopt;
    return value ? std::optional(PropertyValue(Date{*value + kSecondsFrom1970To2001})) : std::nullopt;
  }

  std::optional<PropertyValue> data(std::size_t position) {
    const auto extent = extentAt(position, 1);
    if (!extent || !budget_.spend(extent->count)) return std::nullopt;
    return PropertyValue(PropertyData{std::string(bytes_.substr(extent->start, extent->count))});
  }

  std::optional<PropertyValue> text(std::size_t position, std::size_t index) {
    const bool isUtf16 = byteAt(position) >> 4 == 0x6;
    const auto extent = extentAt(position, isUtf16 ? 2 : 1);
    if (!extent || !budget_.spend(extent->count)) return std::nullopt;
    std::optional<Text>& kept = texts_[index];
    if (!kept) kept = isUtf16 ? utf16(*extent) : Text(bytes_.substr(extent->start, extent->count));
    return PropertyValue(*kept);
  }

  Text utf16(const Extent& extent) const {
    std::u16string units;
    units.reserve(extent.count);
    for (std::size_t i = 0; i < extent.count; ++i) {
      units.push_back(static_cast<char16_t>(numberAt(extent.start + 2 * i, 2)));
    }
    return Text(std::move(units));
  }

  std::optional<PropertyValue> array(std::size_t position, int depth) {
    const auto extent = extentAt(position, referenceSize_);
    if (!extent || !budget_.spend()) return std::nullopt;
    PropertyArray values;
    for (std::size_t i = 0; i < extent->count; ++i) {
      auto value = object(numberAt(extent->start + i * referenceSize_, referenceSize_), depth + 1);
      if (!value) return std::nullopt;
      values.push_back(std::move(*value));
    }
    return PropertyValue(std::move(values));
  }

  std::optional<PropertyValue> dictionary(std::size_t position, int depth) {
    const auto extent = extentAt(position, 2 * referenceSize_);
    if (!extent || !budget_.spend()) return std::nullopt;
    PropertyDictionary values;
    const std::size_t firstValue = extent->start + extent->count * referenceSize_;
    for (std::size_t i = 0; i < extent->count; ++i) {
      const auto key = object(numberAt(extent->start + i * referenceSize_, referenceSize_), depth + 1);
      if (!key || !key->text()) return std::nullopt;
      auto value = object(numberAt(firstValue + i * referenceSize_, referenceSize_), depth + 1);
      if (!value) return std::nullopt;
      values.insert_or_assign(*key->text(), std::move(*value));
    }
    return PropertyValue(std::move(values));
  }

  // Objects end where the table of offsets begins.
  bool fits(std::size_t start, std::size_t size) const { return start <= table_ && size <= table_ - start; }

  // The contents of an object of `count` units.
  std::optional<Extent> extentAt(std::size_t position, std::size_t unitSize) const {
    std::uint64_t count = byteAt(position) & 0x0F;
    std::size_t start = position + 1;
    if (count == 0x0F) {
      if (!fits(start, 1) || byteAt(start) >> 4 != 0x1) return std::nullopt;
      const std::size_t size = std::size_t{1} << (byteAt(start) & 0x0F);
      if (size > 8 || !fits(start + 1, size)) return std::nullopt;
      count = numberAt(start + 1, size);
      start += 1 + size;
    }
    if (count > (table_ - start) / unitSize) return std::nullopt;
    return Extent{start, static_cast<std::size_t>(count)};
  }

  std::string_view bytes_;
  PropertyListBudget budget_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t objectCount_ = 0;
  std::size_t table_ = 0;
  std::vector<std::optional<Text>> texts_;  // by object, so that shared texts are one object
};

}  // namespace

std::optional<PropertyValue> readBinaryPropertyList(std::string_view bytes,
                                                    const PropertyListLimits& limits) {
  return BinaryReader(bytes, limits).read();
}

}  // namespace halvorn
