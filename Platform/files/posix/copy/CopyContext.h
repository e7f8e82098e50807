// What everybody who works at one copy shares.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>

#include "Core/ByteCounter.h"
#include "Platform/files/posix/copy/Cause.h"
#include "Platform/files/posix/copy/CopyQueue.h"
#include "Platform/files/posix/copy/FileMetadata.h"
#include "Platform/files/posix/copy/HardLinks.h"
#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/files/posix/copy/Trial.h"
#include "Platform/rights/posix/RightsOf.h"

namespace halvorn {

struct CopyRules {
  const Person* readAs = nullptr;  // whose rights open the originals; null: this process' own
  Ownership ownership = Ownership::Kept;
  ByteCounter* copied = nullptr;  // told what has been copied; null: nobody counts
};

struct CopyPlace;

// How many descriptors this process can open beside those that are open, counted up to `most`; where the
// limit is a usual one it is not counted, and `most`. `any` is one that is open.
[[nodiscard]] unsigned descriptorsLeft(int any, unsigned most);

struct CopyContext {
  // `from` and `to` are the paths of the top item and of its copy, and live as long as this.
  CopyContext(const CopyRules& theRules, int targetTop, const std::string& from, const std::string& to)
      : rules(theRules),
        giver(theRules.ownership),
        links(targetTop),
        hasFewDescriptors_(descriptorsLeft(targetTop, manyDescriptors) < manyDescriptors),
        from_(from),
        to_(to) {}

  // Everybody may open less then, and one thread works.
  [[nodiscard]] bool hasFewDescriptors() const { return hasFewDescriptors_; }
  void allowWorkers(unsigned count) { queue.allowWorkers(hasFewDescriptors_ ? 1 : count); }

  // So many bytes of a file are in its copy.
  void noteCopied(off_t bytes) const {
    if (rules.copied != nullptr) rules.copied->add(static_cast<std::uint64_t>(bytes));
  }

  // The first failure ends the copy: everybody looks here before going on. It is what failure() tells.
  void fail(const Cause& cause, const CopyPlace& place) noexcept;
  // `folder` is the way down to the item; null: it is the top item.
  void fail(const Cause& cause, const FolderPath* folder, const char* name) noexcept;
  // Once all is done.
  [[nodiscard]] std::optional<FileFailure> failure();
  [[nodiscard]] bool hasFailed() const { return queue.isStopped(); }

  // Something had to be fetched from a disk. When that goes on, more threads are
  // of use: they wait side by side.
  void sawMissing() {
    if (missing_.fetch_add(1, std::memory_order_relaxed) + 1 == missingWhenCold)
      allowWorkers(workersWhenCold);
  }
  [[nodiscard]] bool isCold() const { return missing_.load(std::memory_order_relaxed) >= missingWhenCold; }

  // Also where nobody can say: an image, for one, may have to be unpacked.
  [[nodiscard]] bool mayWaitForReads() const { return isCold() || !asking.isWorthTrying(); }

  // Files can share their blocks here. Where that only changes one tree of the file system's own, several
  // threads would get in each other's way.
  void sawClone(int target) {
    if (!clones.worked() && SystemCalls::hasOneTree(target)) queue.allowWorkers(1);
  }

  const CopyRules rules;
  const MetadataGiver giver;
  HardLinks links;
  Trial clones;          // sharing the blocks of a file between two files
  Trial copiesInSystem;  // letting the system copy from file to file
  Trial mappings;        // writing from a mapping of the original
  Trial asking;          // asking what of an original is in memory
  Trial quietReading;    // reading without noting the time of the access
  CopyQueue queue;

 private:
  // Of eight threads, each with its folders and a handful of files, and of tasks that keep a folder open.
  static constexpr unsigned manyDescriptors = 512;
  static constexpr unsigned missingWhenCold = 8;
  static constexpr unsigned workersWhenCold = 8;
  std::atomic<unsigned> missing_ = 0;
  const bool hasFewDescriptors_;
  const std::string& from_;
  const std::string& to_;
  std::mutex failing_;
  std::optional<FileFailure> failure_;
};

}  // namespace halvorn
