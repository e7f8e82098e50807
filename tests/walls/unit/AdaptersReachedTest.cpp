// What is built is used: every adapter is made by a program that is shipped, and not by tests alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <deque>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

std::string textOf(const std::string& file) { return contentsOf(fs::path(KT_SOURCE_DIR) / file); }
bool exists(const std::string& file) { return fs::exists(fs::path(KT_SOURCE_DIR) / file); }

std::string sourceOf(const std::string& header) { return header.substr(0, header.size() - 1) + "cpp"; }

std::vector<std::string> filesLike(const std::string& folder, const std::regex& pattern) {
  std::vector<std::string> found;
  const fs::path root = KT_SOURCE_DIR;
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    const std::string file = fs::relative(entry.path(), root).string();
    if (entry.is_regular_file() && std::regex_match(file, pattern)) found.push_back(file);
  }
  return found;
}

std::set<std::string> firstGroups(const std::string& text, const std::regex& pattern) {
  std::set<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
    found.insert((*match)[1]);
  return found;
}

// Where a program begins: the roots, the object that owns the library's adapters, what is loaded late.
std::vector<std::string> beginnings() {
  std::vector<std::string> result;
  for (const auto& [folder, pattern] :
       std::map<std::string, std::string>{{"Sources", "Sources/main_linux[.]cpp"},
                                          {"train", "train/train_main[.]cpp"},
                                          {"System", "System/linux/\\w+[.]cpp"},
                                          {"Platform", "Platform/\\w+/linux/\\w+Module[.]cpp"}}) {
    const auto found = filesLike(folder, std::regex(pattern));
    EXPECT_FALSE(found.empty()) << pattern;
    result.insert(result.end(), found.begin(), found.end());
  }
  return result;
}

// The texts of the beginnings, of all that they include, and of the sources of that.
std::map<std::string, std::string> reachedFrom(const std::vector<std::string>& files) {
  static const std::regex include(R"re(\n\s*#\s*include "([^"]+)")re");
  std::map<std::string, std::string> reached;
  std::deque<std::string> waiting(files.begin(), files.end());
  for (; !waiting.empty(); waiting.pop_front()) {
    const std::string& file = waiting.front();
    if (!exists(file) || reached.contains(file)) continue;
    const std::string text = reached[file] = "\n" + textOf(file);
    for (const std::string& header : firstGroups(text, include)) {
      waiting.push_back(header);
      waiting.push_back(sourceOf(header));
    }
  }
  return reached;
}

struct Adapter {
  std::string name;
  std::string header;
};

// The classes in the systems' folders that implement an interface of Platform.
std::vector<Adapter> adapters() {
  std::set<std::string> interfaces;
  for (const std::string& file : filesLike("Platform", std::regex("Platform/[a-z]+/\\w+[.]h")))
    interfaces.merge(firstGroups(textOf(file), std::regex(R"(\n\s*virtual ~(\w+)\(\))")));
  static const std::regex derived(R"(\n\s*class (\w+)(?: final)? : ((?:public \w+(?:, )?)+))");
  std::vector<Adapter> result;
  for (const std::string& file : filesLike("Platform", std::regex("Platform/[a-z]+/(linux|posix)/.*[.]h"))) {
    const std::string text = textOf(file);
    for (std::sregex_iterator match(text.begin(), text.end(), derived), end; match != end; ++match) {
      const std::set<std::string> bases = firstGroups((*match)[2], std::regex(R"(public (\w+))"));
      const bool isAdapter = std::any_of(bases.begin(), bases.end(),
                                         [&](const std::string& base) { return interfaces.contains(base); });
      if (isAdapter) result.push_back({(*match)[1], file});
    }
  }
  return result;
}

// Whether the text holds the name as a whole word.
bool names(const std::string& text, const std::string& name) {
  const auto isPartOfWord = [&](std::size_t place) {
    return place < text.size() &&
           (std::isalnum(static_cast<unsigned char>(text[place])) != 0 || text[place] == '_');
  };
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    if (!isPartOfWord(at - 1) && !isPartOfWord(at + name.size())) return true;
  }
  return false;
}

// By the source beside its header only where that also makes another adapter, which is named elsewhere: it then
// hands this one out.
std::vector<std::string> adaptersThatNobodyNames(const std::map<std::string, std::string>& reached) {
  std::set<std::string> usedHeaders;
  std::vector<Adapter> left;
  for (const Adapter& adapter : adapters()) {
    const bool isNamed = std::any_of(reached.begin(), reached.end(), [&](const auto& file) {
      return file.first != adapter.header && file.first != sourceOf(adapter.header) &&
             names(file.second, adapter.name);
    });
    if (isNamed) usedHeaders.insert(adapter.header);
    if (!isNamed) left.push_back(adapter);
  }
  std::vector<std::string> result;
  for (const auto& [name, header] : left) {
    const auto source = reached.find(sourceOf(header));
    const bool isHandedOut =
        usedHeaders.contains(header) && source != reached.end() && names(source->second, name);
    if (!isHandedOut) result.push_back(name);
  }
  return result;
}

TEST(Walls, NoAdapterIsUsedByTestsAlone) {
  EXPECT_GT(adapters().size(), 40U);
  EXPECT_EQ(adaptersThatNobodyNames(reachedFrom(beginnings())), std::vector<std::string>{});
}

TEST(Walls, AProgramThatNamesNoAdapterIsSeenToLeaveItOver) {
  const auto left = adaptersThatNobodyNames(reachedFrom({"train/train_main.cpp"}));
  EXPECT_NE(std::find(left.begin(), left.end(), "AtSpiAccessibility"), left.end());
  EXPECT_EQ(std::find(left.begin(), left.end(), "PosixFileManager"), left.end());
}

}  // namespace
}  // namespace halvorn
