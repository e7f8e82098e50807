// User defaults in property lists under the configuration folder, "<domain>.plist", below the command line.
#pragma once

#include <string>
#include <vector>

#include "Platform/bundles/Defaults.h"

namespace halvorn {

class XdgFolders;

// The files are read anew each time, so a change by another program is seen at the next question.
class LinuxDefaults : public Defaults {
 public:
  // `arguments` are those of the command line, program path included: "-key value". A value may be written as
  // a property list in the old text format, "(a, b)". `domain` is the program's own, its bundle identifier.
  LinuxDefaults(const XdgFolders& folders, const Text& domain, const std::vector<Text>& arguments);

  std::optional<PropertyValue> objectForKey(const Text& key) const override;
  std::optional<PropertyValue> objectForKey(const Text& key, const Text& domain) const override;

 private:
  std::string folder_;
  Text domain_;
  PropertyDictionary arguments_;
};

}  // namespace halvorn
