// Claims of several programs that a test stands for: those that share a map of them know of each other.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "Platform/files/ItemClaims.h"

namespace halvorn {

class FakeItemClaims : public ItemClaims {
 public:
  using Claims = std::map<Text, std::function<void()>>;

  FakeItemClaims() : claims_(own_) {}
  explicit FakeItemClaims(Claims& shared) : claims_(shared) {}
  FakeItemClaims(const FakeItemClaims&) = delete;
  FakeItemClaims& operator=(const FakeItemClaims&) = delete;
  ~FakeItemClaims() override {
    for (const Text& path : ours_) claims_.erase(path);
  }

  Claim claim(const Text& path, std::function<void()> wanted) override {
    if (isUnknown) return Claim::Unknown;
    const auto [place, isNew] = claims_.try_emplace(path, std::move(wanted));
    if (isNew) ours_.push_back(path);
    if (isNew) return Claim::Ours;
    place->second();
    return Claim::Anothers;
  }

  bool isUnknown = false;

 private:
  Claims own_;
  Claims& claims_;
  std::vector<Text> ours_;
};

}  // namespace halvorn
