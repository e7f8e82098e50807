// A workspace that writes down what it was asked and answers from lists.
#pragma once

#include <deque>
#include <map>
#include <vector>

#include "Core/Paths.h"
#include "Platform/bundles/Workspace.h"

namespace halvorn {

class FakeWorkspace : public Workspace {
 public:
  bool openFile(const Text& path) override {
    opened.push_back(path);
    return next(openAnswers, opens);
  }
  bool openUrl(const Text& url) override {
    openedUrls.push_back(url);
    return opens;
  }
  int registerBundle(const Text& urlText) override {
    registered.push_back(urlText);
    return registerStatus;
  }
  bool hasIcon(const Text& path) override {
    askedForIcon.push_back(path);
    return next(iconAnswers, iconsExist);
  }
  Text displayName(const Text& path) const override {
    const auto found = displayNames.find(path);
    if (found != displayNames.end()) return found->second;
    const Text name = Paths::lastComponent(path);
    return Paths::extension(name) == Text("app") ? Paths::deletingExtension(name) : name;
  }

  std::optional<std::vector<OptionalText>> loginItems() const override { return loginItemPaths; }

  // Answers for the next calls; once they are used up, the plain flags below answer.
  std::deque<bool> openAnswers;
  std::deque<bool> iconAnswers;
  bool opens = true;
  bool iconsExist = true;
  int registerStatus = 0;
  std::map<Text, Text> displayNames;  // path -> name
  std::optional<std::vector<OptionalText>> loginItemPaths = std::vector<OptionalText>{};

  std::vector<Text> opened;
  std::vector<Text> openedUrls;
  std::vector<Text> registered;
  std::vector<Text> askedForIcon;

 private:
  static bool next(std::deque<bool>& answers, bool otherwise) {
    if (answers.empty()) return otherwise;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

}  // namespace halvorn
