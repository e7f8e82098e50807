// An authorizer that writes down what it was asked and answers from lists.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/rights/Authorizer.h"

namespace halvorn {

class FakeAuthorizer : public Authorizer {
 public:
  struct Request {
    Text toolPath;
    std::vector<Text> arguments;
  };

  Result requestAdministratorRights(const Text& toolPath, const std::vector<Text>& arguments) override {
    if (isWithdrawn) return {AuthorizationAnswer::Canceled, nullptr};
    requests.push_back({toolPath, arguments});
    if (onRequest) onRequest();
    if (isWithdrawn) return {AuthorizationAnswer::Canceled, nullptr};
    const AuthorizationAnswer given = next(answers, answer);
    if (given != AuthorizationAnswer::Granted) return {given, nullptr, reason};
    return {given, std::make_unique<Rights>(*this)};
  }

  void withdraw() override { isWithdrawn = true; }

  // Answers for the next requests and runs; once they are used up, the plain values answer.
  std::deque<AuthorizationAnswer> answers;
  std::deque<ToolEnd> ends;
  AuthorizationAnswer answer = AuthorizationAnswer::Granted;
  ToolEnd end = ToolExited{0};
  OptionalText reason;  // of a refusal

  std::function<void()> onRequest;  // while the dialog would be shown
  std::function<void()> onRun;      // while the tool would run

  std::vector<Request> requests;
  int runs = 0;
  std::uint64_t bytesCopied = 0;  // told by each run
  int freed = 0;                  // authorizations given back
  bool isWithdrawn = false;

 private:
  class Rights : public Authorization {
   public:
    explicit Rights(FakeAuthorizer& owner) : owner_(owner) {}
    ~Rights() override { ++owner_.freed; }
    Rights(const Rights&) = delete;
    Rights& operator=(const Rights&) = delete;

    void whenCopied(std::function<void(std::uint64_t)> copied) override { copied_ = std::move(copied); }
    ToolEnd run() override {
      ++owner_.runs;
      if (owner_.onRun) owner_.onRun();
      if (copied_) copied_(owner_.bytesCopied);
      return next(owner_.ends, owner_.end);
    }

   private:
    FakeAuthorizer& owner_;
    std::function<void(std::uint64_t)> copied_;
  };

  template <typename Value>
  static Value next(std::deque<Value>& values, const Value& otherwise) {
    if (values.empty()) return otherwise;
    const Value value = values.front();
    values.pop_front();
    return value;
  }
};

}  // namespace halvorn
