// The file system through the system's own calls.
#pragma once

#include <memory>
#include <optional>

#include "Core/ByteCounter.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/posix/copy/ItemPlace.h"
#include "Platform/files/posix/copy/TreeCopy.h"
#include "Platform/rights/posix/Person.h"

namespace halvorn {

// How a process with more rights than the person it works for handles files.
struct FileRules {
  // Links among the folders of a path that is written to.
  LinksInTheWay links = LinksInTheWay::Followed;
  // Holds the folders that are written to, which also refuses links; null: each path is looked up anew.
  std::shared_ptr<FolderPins> pins = nullptr;
  // Whoever's rights decide what can be read: listed, or copied from. nullopt: this process' own.
  std::optional<Person> readAs = std::nullopt;
  Ownership ownership = Ownership::Kept;
  // Counts what is copied, while it is; null: nobody counts.
  ByteCounter* copied = nullptr;
};

class PosixFileManager : public FileManager {
 public:
  explicit PosixFileManager(FileRules rules = {});

  bool fileExists(const Text& path) const override;
  bool isDirectory(const Text& path) const override;
  bool isWritable(const Text& path) const override;
  std::optional<std::vector<Text>> contentsOfDirectory(const Text& path) const override;
  std::optional<std::string> readFile(const Text& path, std::size_t limit) const override;
  bool isInside(const Text& path, const Text& folder) const override;
  std::optional<FileFailure> copyItem(const Text& from, const Text& to) override;
  std::optional<FileFailure> obstacleToCopying(const Text& from, const Text& to) const override;
  std::optional<FileFailure> removeItem(const Text& path) override;
  bool opensForReadingAndWriting(const Text& path) const override;
  bool createEmptyFile(const Text& path) override;

 protected:
  struct CopyPlaces {
    ItemPlace source;
    ItemPlace target;
  };
  // Where a copy is made from and to. Fails: when either cannot be reached, or the copy would lie in the original.
  OrCause<CopyPlaces, FileFailure> placesOfCopy(const Text& from, const Text& to) const;

 private:
  [[nodiscard]] const Person* reader() const { return rules_.readAs ? &*rules_.readAs : nullptr; }
  [[nodiscard]] LinksInTheWay linksToRead() const;
  OrCause<ItemPlace> placeToRead(const Text& path) const;
  OrCause<ItemPlace> placeToWrite(const Text& path) const;

  FileRules rules_;
};

}  // namespace halvorn
