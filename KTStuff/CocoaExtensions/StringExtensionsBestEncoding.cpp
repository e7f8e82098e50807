// Texts from files whose encoding nobody told.
#include <algorithm>
#include <limits>
#include <string>

#include "KTStuff/CocoaExtensions/StringExtensionsEncodings.h"

namespace halvorn::StringExtensions {
namespace {

struct Candidate {
  TextEncoding encoding;
  const char* name;
};
// A tie goes to the earlier one.
constexpr Candidate kCandidates[] = {{TextEncodings::unicode, "Unicode"},
                                     {TextEncodings::macRoman, "MacRoman"},
                                     {TextEncodings::latin1, "Latin1"},
                                     {TextEncodings::utf8, "UTF8"}};
// What is left of them when the bytes are known to be Western text of one byte per character.
constexpr Candidate kSingleByteCandidates[] = {kCandidates[1], kCandidates[2]};

constexpr float kWorstScore = -1'000'000.0F;

// A detector's guess below this is hardly better than chance.
constexpr int kCredibleConfidence = 40;

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0;
}

TextEncoding explicitEncoding(std::string_view bytes, TextEncoding defaultEncoding) {
  const std::uint8_t b0 = byteAt(bytes, 0), b1 = byteAt(bytes, 1), b2 = byteAt(bytes, 2),
                     b3 = byteAt(bytes, 3);
  if (b0 == 0xEF && b1 == 0xBB && b2 == 0xBF) return TextEncodings::utf8;
  if (b0 == 0xFE && b1 == 0xFF) return TextEncodings::utf16BigEndian;
  if (b0 == 0x00 && b1 == 0x00 && b2 == 0xFE && b3 == 0xFF) return TextEncodings::utf32BigEndian;
  if (b0 != 0xFF || b1 != 0xFE) return defaultEncoding;
  return b2 == 0 && b3 == 0 ? TextEncodings::utf32LittleEndian : TextEncodings::utf16LittleEndian;
}

template <std::size_t count>
OptionalText bestOf(const Candidate (&candidates)[count], std::string_view bytes, const TextCodecs& codecs,
                    const Unicode& unicode) {
  OptionalText best;
  float bestScore = kWorstScore;
  for (const Candidate& candidate : candidates) {
    const auto text = codecs.decode(bytes, candidate.encoding);
    if (!text) continue;
    const float score = reasonableTextFactor(*text, candidate.name, unicode);
    if (!(score > bestScore)) continue;
    best.emplace(*text);
    bestScore = score;
  }
  return best;
}

// Encodings of one byte per character that detectors confuse with Mac OS Roman, which they do not know.
bool isWesternSingleByte(TextEncoding encoding) {
  constexpr TextEncoding kWestern[] = {TextEncodings::latin1,        TextEncodings::latin2,
                                       TextEncodings::latin5,        TextEncodings::windowsLatin1,
                                       TextEncodings::windowsLatin2, TextEncodings::windowsTurkish};
  return std::find(std::begin(kWestern), std::end(kWestern), encoding) != std::end(kWestern);
}

// Bytes that have no place in a text of one byte per character, while UTF-16 and UTF-32 are full of them.
bool holdsControlBytes(std::string_view bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value < 0x20 && value != '\t' && value != '\n' && value != '\r' && value != '\f';
  });
}

OptionalText detectedText(std::string_view bytes, const TextCodecs& codecs, const Unicode& unicode) {
  for (const DetectedEncoding& guess : codecs.detectEncodings(bytes)) {
    if (isWesternSingleByte(guess.encoding)) {
      if (holdsControlBytes(bytes)) continue;
      return bestOf(kSingleByteCandidates, bytes, codecs, unicode);
    }
    // Nothing is UTF-8 by accident, however little a detector makes of it.
    const bool isUtf8 = guess.encoding == TextEncodings::utf8 && !holdsControlBytes(bytes);
    if (guess.confidence < kCredibleConfidence && !isUtf8) continue;
    if (const auto text = codecs.decode(bytes, guess.encoding)) return *text;
  }
  return std::nullopt;
}

}  // namespace

float reasonableTextFactor(const Text& text, const Text& /*name*/, const Unicode& unicode) {
  constexpr std::size_t kUnitsLookedAt = 1000;
  constexpr int kPointsAgainstUnassigned = 10;
  const std::u16string_view units = text.units().substr(0, kUnitsLookedAt);
  int good = 0;
  int bad = 0;
  for (const char16_t unit : units) {
    if (unit < 33) {
      const bool isLayout = unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u' ';
      ++(isLayout ? good : bad);
    } else if (unicode.isAlphanumeric(unit)) {
      ++good;
    } else if (unicode.isUnassigned(unit)) {
      bad += kPointsAgainstUnassigned;
    }
  }
  if (units.empty()) return std::numeric_limits<float>::quiet_NaN();
  return static_cast<float>(good - bad) / static_cast<float>(units.size());
}

TextEncoding explicitEncodingOfFile(const Text& path, TextEncoding defaultEncoding,
                                    const FileManager& files) {
  const auto bytes = files.readFile(path, kLargestTextFile);
  return bytes ? explicitEncoding(*bytes, defaultEncoding) : defaultEncoding;
}

OptionalText stringWithBestEncodingFromFile(const Text& path, const FileManager& files,
                                            const TextCodecs& codecs, const Unicode& unicode) {
  const auto bytes = files.readFile(path, kLargestTextFile);
  if (!bytes) return std::nullopt;
  if (const TextEncoding marked = explicitEncoding(*bytes, 0); marked != 0) {
    if (const auto text = codecs.decode(*bytes, marked)) return *text;
  }
  if (OptionalText detected = detectedText(*bytes, codecs, unicode)) return detected;
  return bestOf(kCandidates, *bytes, codecs, unicode);
}

}  // namespace halvorn::StringExtensions
