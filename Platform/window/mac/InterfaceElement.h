// The interface description as a tree, before anything is made of it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

struct InterfaceElement {
  std::string name;
  std::map<std::string, Text> attributes;
  std::vector<InterfaceElement> children;

  // "" when it has none of that name.
  [[nodiscard]] Text value(const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? Text() : found->second;
  }
  [[nodiscard]] int number(const std::string& attribute, int otherwise) const;
};

struct ReadInterfaceElement {
  std::optional<InterfaceElement> element;  // nullopt when the description is no XML
  Text problem;                             // then: why
};
[[nodiscard]] ReadInterfaceElement readInterfaceElement(const std::string& description);

}  // namespace halvorn
