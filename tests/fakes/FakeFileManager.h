// A file system in memory: folders, files and links, each with what the installer can ask of it. Every
// operation that changes something is written down in `calls`, in order.
//
//   FakeFileManager files;
//   files.addFile("/Volumes/NAS/Nas.app/Contents/Info.plist", "...");   // parents are made
//   files.addFolder("/Applications");
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Core/Paths.h"
#include "Core/Text.h"
#include "Platform/files/FileManager.h"

namespace halvorn {

class FakeFileManager : public FileManager {
 public:
  enum class Kind { Folder, File, Link, Pipe };
  struct Node {
    Kind kind = Kind::File;
    std::string contents = {};  // of a link: where it points
    bool isWritable = true;
    bool isReadable = true;
  };

  FakeFileManager() { nodes["/"] = Node{.kind = Kind::Folder}; }

  // Paths are absolute and without a slash at their end.
  void addFolder(const std::string& path) { add(path, Node{.kind = Kind::Folder}); }
  void addFile(const std::string& path, const std::string& contents = "") {
    add(path, Node{.kind = Kind::File, .contents = contents});
  }
  void addLink(const std::string& path, const std::string& target) {
    add(path, Node{.kind = Kind::Link, .contents = target});
  }
  void addPipe(const std::string& path) { add(path, Node{.kind = Kind::Pipe}); }
  // The node at the path itself, a link not followed; null when there is none.
  [[nodiscard]] Node* node(const std::string& path) {
    const auto found = nodes.find(path);
    return found == nodes.end() ? nullptr : &found->second;
  }
  // Every path at or below `path`.
  [[nodiscard]] std::vector<std::string> tree(const std::string& path) const {
    std::vector<std::string> result;
    for (const auto& [name, ignored] : nodes) {
      if (isAtOrBelow(name, path)) result.push_back(name);
    }
    return result;
  }
  // Takes the item out of the file system, with everything in it; false when there is none.
  bool take(const std::string& path) {
    return std::erase_if(nodes, [&](const auto& entry) { return isAtOrBelow(entry.first, path); }) > 0;
  }

  bool fileExists(const Text& path) const override { return resolved(path) != nullptr; }
  bool isDirectory(const Text& path) const override {
    const Node* found = resolved(path);
    return found != nullptr && found->kind == Kind::Folder;
  }
  bool isWritable(const Text& path) const override {
    const Node* found = resolved(path);
    return found != nullptr && found->isWritable;
  }
  std::optional<std::vector<Text>> contentsOfDirectory(const Text& path) const override {
    const auto at = resolve(bytes(path));
    if (!at || nodes.at(*at).kind != Kind::Folder || !nodes.at(*at).isReadable) return std::nullopt;
    std::vector<Text> names;
    for (const auto& [name, ignored] : nodes) {
      if (name != "/" && parentOf(name) == *at) names.push_back(Paths::lastComponent(name));
    }
    return names;
  }
  std::optional<std::string> readFile(const Text& path, std::size_t limit) const override {
    const Node* found = resolved(path);
    if (found == nullptr || found->kind != Kind::File || !found->isReadable) return std::nullopt;
    if (found->contents.size() > limit) return std::nullopt;
    return found->contents;
  }

  bool isInside(const Text& path, const Text& folder) const override {
    const auto item = place(path);
    const auto around = place(folder);
    return item && around && isAtOrBelow(*item, *around);
  }
  std::optional<FileFailure> copyItem(const Text& from, const Text& to) override {
    const std::string source = bytes(from);
    const std::string target = bytes(to);
    calls.push_back("copy " + source + " -> " + target);
    if (onCopy) onCopy();
    if (source.empty() || target.empty())
      return failure(Operation::Reach, "", "the path is empty or has a NUL in it");
    if (const auto unreachable = failureToReach(source)) return unreachable;
    if (const auto unreachable = failureToReach(target)) return unreachable;
    if (target != source && isAtOrBelow(target, source))
      return failure(Operation::Make, target, "it would lie inside of what is copied");
    if (!nodes.contains(source)) return failure(Operation::Look, source, "No such file or directory");
    if (const auto unmade = failureToMake(target)) return unmade;
    std::map<std::string, Node> copies;
    for (const auto& [name, entry] : nodes) {
      if (!isAtOrBelow(name, source)) continue;
      if (entry.kind == Kind::File && !entry.isReadable)
        return failure(Operation::Open, name, "Permission denied");
      copies[target + name.substr(source.size())] = entry;
    }
    nodes.merge(copies);
    return std::nullopt;
  }
  // Nothing is ever known beforehand.
  std::optional<FileFailure> obstacleToCopying(const Text&, const Text&) const override {
    return std::nullopt;
  }
  std::optional<FileFailure> removeItem(const Text& path) override {
    const std::string target = bytes(path);
    calls.push_back("remove " + target);
    if (target == "/") return failure(Operation::Reach, target, "the path names nothing in a folder");
    if (const auto unreachable = failureToReach(target)) return unreachable;
    if (!nodes.contains(target)) return failure(Operation::Remove, target, "No such file or directory");
    if (!nodes.at(parentOf(target)).isWritable)
      return failure(Operation::Remove, target, "Permission denied");
    take(target);
    return std::nullopt;
  }

  bool opensForReadingAndWriting(const Text& path) const override {
    const Node* found = resolved(path);
    return found != nullptr && found->kind == Kind::File && found->isWritable && found->isReadable;
  }
  bool createEmptyFile(const Text& path) override {
    const std::string target = bytes(path);
    calls.push_back("create " + target);
    const Node* parent = resolved(parentOf(target));
    if (nodes.contains(target) || parent == nullptr || parent->kind != Kind::Folder || !parent->isWritable) {
      return false;
    }
    nodes[target] = Node{};
    return true;
  }

  std::map<std::string, Node> nodes;
  std::vector<std::string> calls;
  std::function<void()> onCopy;  // when a copy has been asked for, before anything is done

 private:
  using Operation = FileFailure::Operation;

  static FileFailure failure(Operation operation, const std::string& path, const char* reason) {
    return {.operation = operation, .path = path, .reason = reason};
  }
  [[nodiscard]] std::optional<FileFailure> failureToReach(const std::string& path) const {
    const Node* parent = resolved(parentOf(path));
    if (parent == nullptr) return failure(Operation::Reach, path, "No such file or directory");
    if (parent->kind != Kind::Folder) return failure(Operation::Reach, path, "Not a directory");
    return std::nullopt;
  }
  [[nodiscard]] std::optional<FileFailure> failureToMake(const std::string& target) const {
    constexpr std::size_t longestName = 255;
    if (nodes.contains(target)) return failure(Operation::Make, target, "File exists");
    if (!resolved(parentOf(target))->isWritable) return failure(Operation::Make, target, "Permission denied");
    if (Paths::lastComponent(target).bytes().size() > longestName)
      return failure(Operation::Make, target, "File name too long");
    return std::nullopt;
  }
  static bool isAtOrBelow(const std::string& name, const std::string& path) {
    return name == path || (name.starts_with(path) && (path == "/" || name[path.size()] == '/'));
  }
  static std::string parentOf(const std::string& path) { return Paths::deletingLastComponent(path).bytes(); }
  static std::string bytes(const Text& path) {
    std::string result = path.bytes();
    while (result.size() > 1 && result.back() == '/') result.pop_back();
    return result;
  }
  void add(const std::string& path, Node node) {
    const std::string parent = parentOf(path);
    if (!nodes.contains(parent)) add(parent, Node{.kind = Kind::Folder});
    nodes[path] = std::move(node);
  }
  // The path of the item behind all links on the way; nullopt when there is none.
  [[nodiscard]] std::optional<std::string> resolve(const std::string& path, int linksLeft = 40) const {
    if (path.empty() || path.front() != '/' || linksLeft == 0) return std::nullopt;
    std::string at = "/";
    for (const Text& component : Paths::components(path)) {
      const std::string name = component.bytes();
      if (name == "/" || name == ".") continue;
      if (name == "..") {
        at = parentOf(at);
        continue;
      }
      const std::string next = Paths::appending(at, component).bytes();
      const auto found = nodes.find(next);
      if (found == nodes.end()) return std::nullopt;
      at = next;
      if (found->second.kind != Kind::Link) continue;
      const std::string& target = found->second.contents;
      const auto behind =
          resolve(target.starts_with('/') ? target : parentOf(next) + "/" + target, linksLeft - 1);
      if (!behind) return std::nullopt;
      at = *behind;
    }
    return at;
  }
  // The path of the item itself, links on the way to its folder followed; nullopt when there is none.
  [[nodiscard]] std::optional<std::string> place(const Text& path) const {
    const std::string written = bytes(path);
    const auto folder = resolve(parentOf(written));
    if (!folder) return std::nullopt;
    const std::string item = Paths::appending(*folder, Paths::lastComponent(written)).bytes();
    return nodes.contains(item) ? std::optional(item) : std::nullopt;
  }
  [[nodiscard]] const Node* resolved(const Text& path) const {
    const auto at = resolve(bytes(path));
    return at ? &nodes.at(*at) : nullptr;
  }
};

}  // namespace halvorn
