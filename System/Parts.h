// What a KTSystem has made so far: each part once, when it is first asked for, and gone before what it was made of.
//
//   struct Hearing {                       // a part: made from the parts it needs
//     explicit Hearing(KTSystem& system) : ear(system.clock()) {}
//     Ear ear;
//   };
//   parts.of<Hearing>().ear
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <typeindex>
#include <utility>
#include <vector>

#include "KTStuff/KTSystem.h"

namespace halvorn {

class KTSystem::Parts {
 public:
  Parts(KTSystem& system, std::vector<Text> argumentList, KTSystemSettings programSettings)
      : arguments(std::move(argumentList)), settings(std::move(programSettings)), system_(system) {}
  ~Parts() {
    while (!made_.empty()) made_.pop_back();
  }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;

  const std::vector<Text> arguments;
  const KTSystemSettings settings;

  template <typename Part>
  Part& of() {
    const auto known = places_.find(std::type_index(typeid(Part)));
    if (known != places_.end()) return *static_cast<Part*>(known->second);
    // Making it may make others, which are older then and go later.
    auto holder = std::make_unique<Holder<Part>>(system_);
    Part& part = holder->part;
    made_.push_back(std::move(holder));
    places_.emplace(typeid(Part), &part);
    return part;
  }
  // The part when it was asked for before, else null.
  template <typename Part>
  [[nodiscard]] Part* known() {
    const auto place = places_.find(std::type_index(typeid(Part)));
    return place == places_.end() ? nullptr : static_cast<Part*>(place->second);
  }

  // Has the task done by finish(), the youngest first. It may be done more than once.
  void whenFinishing(std::function<void()> task) { finishing_.push_back(std::move(task)); }
  void finish() {
    for (auto task = finishing_.rbegin(); task != finishing_.rend(); ++task) (*task)();
  }

 private:
  struct Made {
    virtual ~Made() = default;
  };
  template <typename Part>
  struct Holder : Made {
    explicit Holder(KTSystem& system) : part(system) {}
    Part part;
  };

  KTSystem& system_;
  std::map<std::type_index, void*> places_;
  std::vector<std::unique_ptr<Made>> made_;
  std::vector<std::function<void()>> finishing_;
};

}  // namespace halvorn
