// Gives an item and everything in it to a person.
#pragma once

#include <string>

#include "Platform/posix/Person.h"

namespace halvorn {

// Files that also stand somewhere else (hard links from outside the tree) keep their owner: giving those away
// would give away what was never in this tree. The inner items go first, so that nobody else can change a
// folder before the walk is through with it. Fails: false when anything kept its owner.
[[nodiscard]] bool giveTree(int folder, const std::string& name, const Person& person);

}  // namespace halvorn
