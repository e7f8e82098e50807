// What the items made in one folder turn out to be, so that not every one has to be looked at again.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstdint>
#include <optional>

namespace halvorn {

// A folder gives all that is made in it the same owner and group, and what is asked for with one mode gets
// one mode. The answers have nothing but these three. Thread: any.
class NewItems {
 public:
  // What an item asked for with that mode was made as; nullopt when none was seen yet.
  [[nodiscard]] std::optional<struct stat> madeWith(mode_t asked) const {
    const std::uint32_t modes = modes_.load(std::memory_order_acquire);
    if (modes == 0 || modes >> modeBits != (asked & modeMask)) return std::nullopt;
    return withOwners(modes & modeMask);
  }
  // The owner and group of anything made here; nullopt when nothing was seen yet. The mode is not known.
  [[nodiscard]] std::optional<struct stat> madeByAnybody() const {
    if (!hasOwners_.load(std::memory_order_acquire)) return std::nullopt;
    return withOwners(0);
  }

  void sawOwners(const struct stat& made) {
    owners_.store(std::uint64_t{made.st_uid} << 32 | made.st_gid, std::memory_order_relaxed);
    hasOwners_.store(true, std::memory_order_release);
  }
  void saw(mode_t asked, const struct stat& made) {
    sawOwners(made);
    modes_.store((asked & modeMask) << modeBits | (made.st_mode & modeMask), std::memory_order_release);
  }

 private:
  static constexpr unsigned modeBits = 16;
  static constexpr std::uint32_t modeMask = 0xFFFF;

  [[nodiscard]] struct stat withOwners(mode_t mode) const {
    const std::uint64_t owners = owners_.load(std::memory_order_relaxed);
    struct stat made {};
    made.st_mode = mode;
    made.st_uid = static_cast<uid_t>(owners >> 32);
    made.st_gid = static_cast<gid_t>(owners & 0xFFFFFFFFu);
    return made;
  }

  std::atomic<std::uint64_t> owners_ = 0;
  std::atomic<bool> hasOwners_ = false;
  std::atomic<std::uint32_t> modes_ = 0;  // asked for and made, of the last one looked at
};

}  // namespace halvorn
