// Trees to copy, the same ones every time: the content comes from a fixed seed.
#pragma once

#include <cstdint>
#include <string>

namespace halvorn::SampleTrees {

// Each makes the folder `path`, which must not be there, and throws std::runtime_error when it cannot.

// Some thirty files a folder, of 200 bytes to 16 KB each, three folders deep.
void makeSmallFiles(const std::string& path, int files);
// Frameworks with versions, links to the current one and headers, and resources of all sizes.
void makeMixed(const std::string& path, std::uint64_t bytes);
// One file, without holes.
void makeBigFile(const std::string& path, std::uint64_t bytes);
// Branches `levels` deep with links, hard links across folders, holes and, where the file
// system has them, extended attributes.
void makeDeep(const std::string& path, int levels, int branches);
// Empty files in folders of `filesPerFolder`.
void makeManyFiles(const std::string& path, int files, int filesPerFolder);

}  // namespace halvorn::SampleTrees
