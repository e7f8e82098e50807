// Binary property lists put together object by object, also such as no honest program writes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace halvorn {

inline std::string bigEndian(std::uint64_t number, int size) {
  std::string bytes;
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
    bytes.push_back(static_cast<char>(number >> shift & 0xFF));
  return bytes;
}

// The objects as they stand in the file; references in them have `referenceSize` bytes, offsets four.
inline std::string binaryPropertyList(const std::vector<std::string>& objects, std::uint64_t top,
                                      int referenceSize = 1) {
  std::string file = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += bigEndian(file.size(), 4);
    file += object;
  }
  const std::size_t tableOffset = file.size();
  file += table + std::string(6, '\0') + bigEndian(4, 1) +
          bigEndian(static_cast<std::uint64_t>(referenceSize), 1);
  return file + bigEndian(objects.size(), 8) + bigEndian(top, 8) + bigEndian(tableOffset, 8);
}

// Arrays that each hold the next one; the innermost is empty.
inline std::string nestedBinaryArrays(int depth) {
  std::vector<std::string> objects;
  for (int i = 1; i < depth; ++i) objects.push_back("\xA1" + bigEndian(static_cast<std::uint64_t>(i), 2));
  objects.push_back("\xA0");
  return binaryPropertyList(objects, 0, 2);
}

// Arrays that each name the next one twice, so that the whole doubles with every level.
inline std::string doublingBinaryArrays(int depth) {
  std::vector<std::string> objects;
  for (int i = 1; i < depth; ++i) {
    const std::string next = bigEndian(static_cast<std::uint64_t>(i), 1);
    objects.push_back("\xA2" + next + next);
  }
  objects.push_back("\xA0");
  return binaryPropertyList(objects, 0);
}

}  // namespace halvorn
