// Files and bundles that a test puts on disk.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace halvorn {

enum class Executable { No, Yes };

// Makes the folders above it. Returns the path.
inline std::string putFile(const std::string& path, const std::string& bytes,
                           Executable executable = Executable::No) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  if (executable == Executable::Yes) {
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(0755));
  }
  return path;
}

inline std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// `entries` as "<key>CFBundleExecutable</key><string>Foo</string>".
inline std::string infoPlist(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + entries +
         "</dict></plist>\n";
}

inline std::string plistEntry(const std::string& key, const std::string& text) {
  return "<key>" + key + "</key><string>" + text + "</string>";
}

}  // namespace halvorn
