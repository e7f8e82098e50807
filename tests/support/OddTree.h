// A tree of everything a file system can hold that is out of the ordinary.
#pragma once

#include <string>
#include <vector>

namespace halvorn::SampleTrees {

// Makes the folder `path`. What the file system or this process' rights do not allow is
// left out, and answered: the path of each and the reason. `bigBytes` is the size of the
// biggest file, which is mostly a hole.
[[nodiscard]] std::vector<std::string> makeOdd(const std::string& path, long long bigBytes, int levels);

}  // namespace halvorn::SampleTrees
