#include "Platform/bundles/linux/XmlPropertyList.h"

#include <expat.h>

#include <charconv>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Core/RealReading.h"
#include "Platform/bundles/linux/PropertyListDates.h"
#include "Platform/bundles/linux/TextDecoding.h"
#include "Platform/text/linux/IcuTextCodecs.h"

namespace halvorn {
namespace {

enum class Element { Plist, Dictionary, Array, Key, String, Integer, Real, True, False, Date, Data };

std::optional<Element> elementNamed(std::string_view name) {
  static const std::map<std::string_view, Element> elements = {
      {"plist", Element::Plist}, {"dict", Element::Dictionary}, {"array", Element::Array},
      {"key", Element::Key},     {"string", Element::String},   {"integer", Element::Integer},
      {"real", Element::Real},   {"true", Element::True},       {"false", Element::False},
      {"date", Element::Date},   {"data", Element::Data}};
  const auto found = elements.find(name);
  return found == elements.end() ? std::nullopt : std::optional(found->second);
}

bool isContainer(Element element) {
  return element == Element::Plist || element == Element::Dictionary || element == Element::Array;
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t\r\n") - start + 1);
}

std::optional<PropertyValue> integerFrom(std::string_view text) {
  text = trimmed(text);
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, magnitude, isHexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) return std::nullopt;
  const std::uint64_t largest = static_cast<std::uint64_t>(INT64_MAX) + (isNegative ? 1 : 0);
  if (magnitude > largest) return PropertyValue(static_cast<double>(magnitude) * (isNegative ? -1.0 : 1.0));
  // Negated as unsigned, so that the smallest number does not overflow.
  return PropertyValue(static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude));
}

std::optional<PropertyValue> realFrom(std::string_view text) {
  text = trimmed(text);
  const auto [value, length] = realAtStart<double>(text);
  if (length > 0) return length == text.size() ? std::optional(PropertyValue(value)) : std::nullopt;
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const double infinity = std::numeric_limits<double>::infinity();
  if (text == "inf" || text == "infinity") return PropertyValue(isNegative ? -infinity : infinity);
  if (text == "nan") return PropertyValue(std::numeric_limits<double>::quiet_NaN());
  return std::nullopt;
}

// The name of the encoding in "<?xml version=... encoding=...?>"; empty without one.
std::string_view declaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return {};
  const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t word = declaration.find("encoding");
  if (word == std::string_view::npos) return {};
  std::size_t start = declaration.find_first_not_of(kBlanks, word + std::string_view("encoding").size());
  if (start == std::string_view::npos || declaration[start] != '=') return {};
  start = declaration.find_first_not_of(kBlanks, start + 1);
  if (start == std::string_view::npos || (declaration[start] != '"' && declaration[start] != '\'')) return {};
  const std::size_t end = declaration.find(declaration[start], start + 1);
  return end == std::string_view::npos ? std::string_view() : declaration.substr(start + 1, end - start - 1);
}

// Those that the parser reads by itself, in any case.
bool isKnownToTheParser(std::string_view encoding) {
  std::string name(encoding);
  for (char& character : name) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return name == "UTF-8" || name == "UTF-16" || name == "ISO-8859-1" || name == "US-ASCII";
}

// The list in UTF-8 when it is in an encoding that the parser does not read by itself; nullopt for one that
// is in none at all.
std::optional<std::string> decodedByDeclaration(std::string_view bytes) {
  const IcuTextCodecs codecs;
  const auto encoding = codecs.encodingForIanaName(Text(declaredEncoding(bytes)));
  const auto text = encoding ? codecs.decode(bytes, *encoding) : std::nullopt;
  return text ? std::optional(text->bytes()) : std::nullopt;
}

// Builds the value from expat's events; a list that is wrong anywhere stops the parser.
class XmlReader {
 public:
  XmlReader(const PropertyListLimits& limits, const char* encoding)
      : parser_(XML_ParserCreate(encoding), XML_ParserFree), budget_(limits) {
    if (!parser_) return;
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(), [](void* self, const char* name, const char**) { reader(self).start(name); },
        [](void* self, const char*) { reader(self).end(); });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int length) {
      reader(self).characters({text, static_cast<std::size_t>(length)});
    });
    XML_SetSkippedEntityHandler(parser_.get(), [](void* self, const char*, int) { reader(self).fail(); });
    // A list needs no entities of its own; the ones that hostile files declare
    // grow without bound or name files.
    XML_SetEntityDeclHandler(parser_.get(),
                             [](void* self, const char*, int, const char*, int, const char*, const char*,
                                const char*, const char*) { reader(self).fail(); });
  }

  std::optional<PropertyValue> read(std::string_view bytes) {
    if (!parser_) return std::nullopt;
    const auto status = XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
    if (status != XML_STATUS_OK || hasFailed_) return std::nullopt;
    return std::move(result_);
  }

 private:
  struct Open {
    Element element;
    std::optional<Text> key = std::nullopt;  // a dictionary's key that waits for its value
    PropertyArray array = {};
    PropertyDictionary dictionary = {};
  };

  static XmlReader& reader(void* self) { return *static_cast<XmlReader*>(self); }

  void fail() {
    hasFailed_ = true;
    XML_StopParser(parser_.get(), XML_FALSE);
  }

  void start(const char* name) {
    if (hasFailed_) return;
    const auto element = elementNamed(name);
    const bool isLeafOpen = !open_.empty() && !isContainer(open_.back().element);
    if (!element || isLeafOpen || !budget_.allowsDepth(static_cast<int>(open_.size()) + 1)) return fail();
    const bool isInDictionary = !open_.empty() && open_.back().element == Element::Dictionary;
    if ((*element == Element::Key) != (isInDictionary && !open_.back().key)) return fail();
    if (*element == Element::Plist && !open_.empty()) return fail();
    open_.push_back({*element});
    content_.clear();
  }

  void characters(std::string_view text) {
    if (hasFailed_) return;
    if (!open_.empty() && !isContainer(open_.back().element)) {
      content_.append(text);
    } else if (!isBlank(text)) {
      fail();
    }
  }

  void end() {
    if (hasFailed_) return;
    Open closed = std::move(open_.back());
    open_.pop_back();
    if (closed.element == Element::Plist) return;
    if (!budget_.spend(content_.size())) return fail();
    if (closed.element == Element::Key) {
      open_.back().key = Text(content_);
    } else if (auto value = valueOf(closed)) {
      add(std::move(*value));
    } else {
      fail();
    }
    content_.clear();
  }

  std::optional<PropertyValue> valueOf(Open& closed) const {
    switch (closed.element) {
      case Element::Dictionary:
        if (closed.key) return std::nullopt;
        return PropertyValue(std::move(closed.dictionary));
      case Element::Array:
        return PropertyValue(std::move(closed.array));
      case Element::String:
        return PropertyValue(Text(content_));
      case Element::Integer:
        return integerFrom(content_);
      case Element::Real:
        return realFrom(content_);
      case Element::True:
        return PropertyValue(true);
      case Element::False:
        return PropertyValue(false);
      case Element::Date:
        if (const auto date = dateFromIso8601(trimmed(content_))) return PropertyValue(*date);
        return std::nullopt;
      case Element::Data:
        if (auto bytes = bytesFromBase64(content_)) return PropertyValue(PropertyData{std::move(*bytes)});
        return std::nullopt;
      case Element::Plist:
      case Element::Key:
        break;
    }
    return std::nullopt;
  }

  void add(PropertyValue value) {
    if (open_.empty() || open_.back().element == Element::Plist) {
      if (result_) return fail();
      result_ = std::move(value);
    } else if (open_.back().element == Element::Array) {
      open_.back().array.push_back(std::move(value));
    } else {
      open_.back().dictionary.insert_or_assign(*open_.back().key, std::move(value));
      open_.back().key.reset();
    }
  }

  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
  PropertyListBudget budget_;
  std::vector<Open> open_;
  std::string content_;  // of the leaf that is open
  std::optional<PropertyValue> result_;
  bool hasFailed_ = false;
};

}  // namespace

std::optional<PropertyValue> readXmlPropertyList(std::string_view bytes, const PropertyListLimits& limits) {
  if (!looksLikeUtf16(bytes)) {
    const std::string_view encoding = declaredEncoding(bytes);
    if (encoding.empty() || isKnownToTheParser(encoding)) return XmlReader(limits, nullptr).read(bytes);
    const auto decoded = decodedByDeclaration(bytes);
    return decoded ? XmlReader(limits, "UTF-8").read(*decoded) : std::nullopt;
  }
  const auto text = decodeText(bytes);
  if (!text) return std::nullopt;
  return XmlReader(limits, "UTF-8").read(text->bytes());
}

}  // namespace halvorn
