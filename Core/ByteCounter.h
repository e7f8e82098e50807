// Counts bytes, by several threads at once.
//
// Thread: any.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <utility>

namespace halvorn {

class ByteCounter {
 public:
  // Is told a sum.
  using Told = std::function<void(std::uint64_t bytes)>;

  ByteCounter() = default;
  // `told` is called with the sum each time that another `step` is full, by the thread that filled it.
  ByteCounter(std::uint64_t step, Told told) : step_(step), told_(std::move(told)) {}
  ByteCounter(const ByteCounter&) = delete;
  ByteCounter& operator=(const ByteCounter&) = delete;

  // So many more.
  void add(std::uint64_t bytes) {
    const std::uint64_t before = bytes_.fetch_add(bytes, std::memory_order_relaxed);
    if (told_ && before / step_ != (before + bytes) / step_) told_(before + bytes);
  }
  // By somebody who counted elsewhere; what was said out of turn is not heeded.
  void raiseTo(std::uint64_t bytes) {
    std::uint64_t before = bytes_.load(std::memory_order_relaxed);
    while (before < bytes && !bytes_.compare_exchange_weak(before, bytes, std::memory_order_relaxed)) {
    }
  }
  // From the beginning.
  void reset() { bytes_.store(0, std::memory_order_relaxed); }
  // All of them.
  [[nodiscard]] std::uint64_t bytes() const { return bytes_.load(std::memory_order_relaxed); }

 private:
  std::atomic<std::uint64_t> bytes_ = 0;
  std::uint64_t step_ = 1;
  Told told_;
};

}  // namespace halvorn
