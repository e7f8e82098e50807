#include "Platform/text/linux/IcuTextCodecs.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/ucsdet.h>

#include <limits>
#include <memory>
#include <string>

#include "Platform/text/linux/IcuEncodings.h"

namespace halvorn {
namespace {

struct Closer {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
  void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
};
using Converter = std::unique_ptr<UConverter, Closer>;
using Detector = std::unique_ptr<UCharsetDetector, Closer>;

constexpr std::size_t kLargestSize = std::numeric_limits<std::int32_t>::max() / 8;

// A converter that stops at what it cannot convert instead of replacing it; null when there is none.
Converter openConverter(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  Converter converter(name != nullptr ? ucnv_open(name, &error) : nullptr);
  if (!converter || U_FAILURE(error)) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFallback(converter.get(), false);
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

// Runs a conversion (buffer, capacity, error) -> needed length, again when the first guess was too short.
template <typename Result, typename Conversion>
std::optional<Result> converted(std::size_t guess, Conversion conversion) {
  Result result(guess, '\0');
  UErrorCode error = U_ZERO_ERROR;
  auto length = static_cast<std::size_t>(conversion(result.data(), static_cast<std::int32_t>(guess), &error));
  if (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    result.resize(length + 1);
    length =
        static_cast<std::size_t>(conversion(result.data(), static_cast<std::int32_t>(result.size()), &error));
  }
  if (U_FAILURE(error)) return std::nullopt;
  result.resize(length);
  return result;
}

// Whether the encoding leaves its mark in the text for us to take off; the
// converters that look for marks do not.
bool isMarkLeft(TextEncoding encoding) {
  return encoding == TextEncodings::utf8 || encoding == TextEncodings::utf16BigEndian ||
         encoding == TextEncodings::utf16LittleEndian || encoding == TextEncodings::utf32BigEndian ||
         encoding == TextEncodings::utf32LittleEndian;
}

// Every unit of `from` by the one in its place in `to`.
void replaceUnits(std::u16string& units, std::u16string_view from, std::u16string_view to) {
  if (from.empty()) return;
  for (char16_t& unit : units) {
    const std::size_t place = from.find(unit);
    if (place != std::u16string_view::npos) unit = to[place];
  }
}

}  // namespace

std::optional<Text> IcuTextCodecs::decode(std::string_view bytes, TextEncoding encoding) const {
  const Converter converter = openConverter(IcuEncodings::converterForReading(encoding));
  if (!converter || bytes.size() > kLargestSize) return std::nullopt;
  auto units = converted<std::u16string>(bytes.size() + 1, [&](auto* buffer, auto capacity, auto* error) {
    return ucnv_toUChars(converter.get(), buffer, capacity, bytes.data(),
                         static_cast<std::int32_t>(bytes.size()), error);
  });
  if (!units) return std::nullopt;
  const IcuEncodings::Misreading misreading = IcuEncodings::misreadingOf(encoding);
  replaceUnits(*units, misreading.read, misreading.really);
  if (isMarkLeft(encoding) && units->starts_with(u'\uFEFF')) units->erase(0, 1);
  return Text(std::move(*units));
}

std::optional<std::string> IcuTextCodecs::encode(const Text& text, TextEncoding encoding) const {
  const Converter converter = openConverter(IcuEncodings::converterForWriting(encoding));
  std::u16string_view units = text.units();
  const IcuEncodings::Misreading misreading = IcuEncodings::misreadingOf(encoding);
  std::u16string asTaken;
  if (!misreading.read.empty()) {
    asTaken = units;
    replaceUnits(asTaken, misreading.really, misreading.read);
    units = asTaken;
  }
  if (!converter || units.size() > kLargestSize) return std::nullopt;
  return converted<std::string>(units.size() * 2 + 16, [&](auto* buffer, auto capacity, auto* error) {
    return ucnv_fromUChars(converter.get(), buffer, capacity, units.data(),
                           static_cast<std::int32_t>(units.size()), error);
  });
}

std::optional<TextEncoding> IcuTextCodecs::encodingForIanaName(const Text& name) const {
  return IcuEncodings::encodingNamed(name.bytes().c_str());
}

std::vector<DetectedEncoding> IcuTextCodecs::detectEncodings(std::string_view bytes) const {
  std::vector<DetectedEncoding> guesses;
  UErrorCode error = U_ZERO_ERROR;
  const Detector detector(ucsdet_open(&error));
  if (!detector || bytes.size() > kLargestSize) return guesses;
  ucsdet_setText(detector.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()), &error);
  std::int32_t count = 0;
  const UCharsetMatch** const matches = ucsdet_detectAll(detector.get(), &count, &error);
  for (std::int32_t i = 0; i < count && U_SUCCESS(error); ++i) {
    const char* const name = ucsdet_getName(matches[i], &error);
    const int confidence = ucsdet_getConfidence(matches[i], &error);
    const auto encoding = name != nullptr ? IcuEncodings::encodingNamed(name) : std::nullopt;
    if (encoding) guesses.push_back({*encoding, confidence});
  }
  return guesses;
}

}  // namespace halvorn
