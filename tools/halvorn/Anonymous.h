// Texts without the names of a person and a computer.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Core/PropertyValue.h"

namespace halvorn {

class Anonymous {
 public:
  // "~" for the home folder, PERSON for the account and the words of the full name, COMPUTER for the host.
  Anonymous(const std::string& home, const std::string& account, const std::string& fullName,
            const std::string& host);
  // Those of whoever runs this program.
  [[nodiscard]] static Anonymous ofThisPerson();

  // Whole words alone, so that a name of one letter spoils nothing; every other person's folder in /home, /media and
  // /run/media is SOMEBODY's.
  [[nodiscard]] std::string text(const std::string& text) const;
  // All texts in it, keys too.
  [[nodiscard]] PropertyValue value(const PropertyValue& value) const;

 private:
  std::vector<std::pair<std::string, std::string>> words_;  // the longest first
};

}  // namespace halvorn
