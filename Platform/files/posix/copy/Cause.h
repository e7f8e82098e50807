// What went wrong with one call, before it is known with which path.
#pragma once

#include <cerrno>
#include <optional>
#include <string>
#include <utility>

#include "Platform/files/FileFailure.h"

namespace halvorn {

// Made without memory and as small as two pointers, so that it costs nothing where all goes well. Says yes
// when something went wrong:
//
//   if (const Cause cause = writeAll(...)) return cause;
class [[nodiscard]] Cause {
 public:
  using Operation = FileFailure::Operation;
  // Which item it went wrong with, where something is made from something.
  enum class Side : unsigned char { Copy, Original };

  // None: all went well.
  Cause() = default;
  // The system refused; by default for what its last call left in errno.
  static Cause ofSystem(Operation operation, Side side = Side::Copy, int error = errno) {
    return {Kind::System, operation, side, error, nullptr};
  }
  // This program refuses; `reason` lives for ever.
  static Cause ofOurs(Operation operation, const char* reason, Side side = Side::Copy) {
    return {Kind::Ours, operation, side, 0, reason};
  }
  // The system could not say what was asked, or it said what makes this program refuse. Which of the two it
  // was, errno tells, cleared before the question.
  static Cause ofSystemOrOurs(Operation operation, const char* reason) {
    return errno != 0 ? ofSystem(operation) : ofOurs(operation, reason);
  }
  // A failure that somebody else tells about.
  static Cause toldByAnother() { return {Kind::ToldByAnother, Operation::Link, Side::Copy, 0, nullptr}; }

  [[nodiscard]] explicit operator bool() const { return kind_ != Kind::None; }
  [[nodiscard]] bool isToldByAnother() const { return kind_ == Kind::ToldByAnother; }
  [[nodiscard]] int error() const { return error_; }  // 0 unless the system refused
  [[nodiscard]] Side side() const { return side_; }
  // The value for the log. Allocates.
  [[nodiscard]] FileFailure at(const std::string& path) const;

 private:
  enum class Kind : unsigned char { None, System, Ours, ToldByAnother };
  Cause(Kind kind, Operation operation, Side side, int error, const char* reason)
      : reason_(reason), error_(error), kind_(kind), operation_(operation), side_(side) {}

  const char* reason_ = nullptr;
  int error_ = 0;
  Kind kind_ = Kind::None;
  Operation operation_ = Operation::Look;
  Side side_ = Side::Copy;
};

// What to say where a person's rights are wanted and cannot be had.
inline Cause causeOfMissingRights() {
  return Cause::ofOurs(Cause::Operation::Open, "the rights of the person who asked could not be taken on",
                       Cause::Side::Original);
}

// A value, or why there is none: a Cause, or where the path is known a FileFailure.
template <typename Value, typename Why = Cause>
class [[nodiscard]] OrCause {
 public:
  OrCause(Value value) : value_(std::move(value)) {}
  OrCause(const Why& cause) : cause_(cause) {}

  [[nodiscard]] explicit operator bool() const { return value_.has_value(); }
  [[nodiscard]] Value& operator*() { return *value_; }
  [[nodiscard]] const Value& operator*() const { return *value_; }
  [[nodiscard]] Value* operator->() { return &*value_; }
  [[nodiscard]] const Value* operator->() const { return &*value_; }
  [[nodiscard]] const Why& cause() const { return cause_; }

 private:
  std::optional<Value> value_;
  Why cause_ = {};
};

}  // namespace halvorn
