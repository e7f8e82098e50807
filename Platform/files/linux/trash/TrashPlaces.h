// Where a Trash may be.
#pragma once

#include <string>

#include "Platform/rights/posix/Person.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn::TrashPlaces {

// The folder where the mount that holds `folder` begins.
[[nodiscard]] FileDescriptor topOf(int folder);
// The nearest folder of the path that exists.
[[nodiscard]] FileDescriptor nearestFolder(std::string path);
[[nodiscard]] bool isOwnedBy(int folder, const Person& person);
// In the folder where the mount begins, for this person alone.
[[nodiscard]] std::string nameOfOwn(const Person& person);

}  // namespace halvorn::TrashPlaces
