#include "Platform/bundles/linux/PropertyListReader.h"

#include "Platform/bundles/linux/BinaryPropertyList.h"
#include "Platform/bundles/linux/OldPropertyList.h"
#include "Platform/bundles/linux/TextDecoding.h"
#include "Platform/bundles/linux/XmlPropertyList.h"
#include "Platform/files/posix/BoundedFile.h"

namespace halvorn {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The list without the blanks before it, which XML itself does not allow there.
std::string_view withoutMarkAndBlanks(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  const std::size_t start = bytes.find_first_not_of(" \t\r\n");
  return start == std::string_view::npos ? std::string_view() : bytes.substr(start);
}

// What stands in "<" and ">" without being XML is data in the old format.
bool isXml(const Text& text) {
  const Text start = text.substring(0, 64).trimmed();
  for (const char* const opening : {"<?", "<!", "<plist", "<dict", "<array", "<string"}) {
    if (start.hasPrefix(opening)) return true;
  }
  return false;
}

}  // namespace

std::optional<PropertyValue> readPropertyList(std::string_view bytes, const PropertyListLimits& limits) {
  if (bytes.size() > limits.fileBytes) return std::nullopt;
  if (bytes.starts_with("bplist0")) return readBinaryPropertyList(bytes, limits);
  const auto text = decodeText(bytes);
  if (!text) return std::nullopt;
  if (isXml(*text)) {
    return readXmlPropertyList(looksLikeUtf16(bytes) ? bytes : withoutMarkAndBlanks(bytes), limits);
  }
  return readOldPropertyList(*text, limits);
}

std::optional<PropertyDictionary> readPropertyDictionary(std::string_view bytes,
                                                         const PropertyListLimits& limits) {
  const auto list = readPropertyList(bytes, limits);
  if (!list || !list->dictionary()) return std::nullopt;
  return *list->dictionary();
}

std::optional<PropertyDictionary> readPropertyListFile(const std::string& path) {
  const auto bytes = readRegularFile(path, PropertyListLimits{}.fileBytes);
  return bytes ? readPropertyDictionary(*bytes) : std::nullopt;
}

std::optional<PropertyDictionary> readStringTable(std::string_view bytes, const PropertyListLimits& limits) {
  if (auto dictionary = readPropertyDictionary(bytes, limits)) return dictionary;
  if (bytes.size() > limits.fileBytes || bytes.starts_with("bplist0")) return std::nullopt;
  const auto text = decodeText(bytes);
  return text && !isXml(*text) ? readOldStringTable(*text, limits) : std::nullopt;
}

}  // namespace halvorn
