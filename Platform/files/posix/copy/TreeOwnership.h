// Gives an item and everything in it to a person.
// Why: docs/decisions/008-what-the-person-gets-in-the-trash.md
#pragma once

#include "Platform/rights/posix/Person.h"

namespace halvorn {

// `item` is open for naming, and stood in `fromFolder`; it may have been moved since, but must have been
// opened while it stood there.
//
// Given is only what this process' user owns and everybody could read, and what cannot have been slipped into
// the tree: things in folders that others can write keep their owner, `item` and `fromFolder` included. So do
// files that also stand somewhere else (hard links from outside the tree), what is mounted in the tree, and
// what of the tree is mounted somewhere else, too. Where it is not known what is mounted, nothing is given.
// The inner items go first, so that nobody else can change a folder before the walk is through with it.
// Fails: false when anything kept its owner.
[[nodiscard]] bool giveTree(int fromFolder, int item, const Person& person);

}  // namespace halvorn
