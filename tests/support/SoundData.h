// The sound files of the tests' data.
#pragma once

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace halvorn {

// The bytes of the file; throws std::runtime_error when there is none.
[[nodiscard]] inline std::string fileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("no file " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

[[nodiscard]] inline std::string soundData(const std::string& name) {
  return fileBytes(std::string(KT_SOURCE_DIR) + "/tests/data/sound/" + name);
}

[[nodiscard]] inline std::string shippedSound(const std::string& name) {
  return fileBytes(std::string(KT_SOURCE_DIR) + "/Resources/sounds/" + name);
}

}  // namespace halvorn
