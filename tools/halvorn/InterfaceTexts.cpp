#include "tools/halvorn/InterfaceTexts.h"

#include <expat.h>

#include <memory>

namespace halvorn {
namespace {

struct Reading {
  const LocalizedStrings& strings;
  std::map<std::string, Text> texts = {};
};

void XMLCALL beginElement(void* context, const XML_Char* /*name*/, const XML_Char** attributes) {
  std::map<std::string, std::string> values;
  for (; *attributes != nullptr; attributes += 2) values[attributes[0]] = attributes[1];
  const std::string& text = values.contains("title") ? values["title"] : values["text"];
  auto& reading = *static_cast<Reading*>(context);
  if (!values["id"].empty() && !text.empty())
    reading.texts[values["id"]] = reading.strings.localized(Text(text));
}

}  // namespace

std::map<std::string, Text> interfaceTexts(const std::string& description, const LocalizedStrings& strings) {
  Reading reading{strings};
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                            XML_ParserFree);
  XML_SetUserData(parser.get(), &reading);
  XML_SetStartElementHandler(parser.get(), beginElement);
  const bool isRead =
      XML_Parse(parser.get(), description.data(), static_cast<int>(description.size()), 1) == XML_STATUS_OK;
  return isRead ? reading.texts : std::map<std::string, Text>();
}

}  // namespace halvorn
