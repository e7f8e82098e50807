// A folder of the person's own in which programs may run, for as long as one runs.
#pragma once

#include <string>
#include <vector>

namespace halvorn {

// Where one may be: the person's cache, then the folders for temporary files. Thread: any.
[[nodiscard]] std::vector<std::string> placesForPrivateFolders();

struct PrivateFolder {
  std::string path;     // "" where there can be none
  std::string problem;  // then a sentence
};

// A new folder in the first of the places that lets programs run, has room for so many bytes, and belongs to nobody else. It is
// held as long as this process or one that it starts lives. What nobody holds any more, left by a process that was killed, is
// removed first. The descriptor that holds it is not closed.
[[nodiscard]] PrivateFolder makePrivateFolder(const std::vector<std::string>& places,
                                              unsigned long long size);

// Removes the folder and what is in it, whatever its modes.
void removeFolder(const std::string& path);

}  // namespace halvorn
