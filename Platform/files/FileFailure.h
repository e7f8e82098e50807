// Why a file could not be copied, removed or moved: a value for the log, where somebody looks for the reason.
#pragma once

#include "Core/Text.h"

namespace halvorn {

struct FileFailure {
  // What was being done.
  enum class Operation : unsigned char {
    Reach,  // finding the way to the item
    Look,   // asking what it is
    List,   // the entries of a folder
    Open,
    Read,
    Make,
    Write,
    Link,      // giving a further name
    Metadata,  // owner, mode, attributes, times
    Remove,
    Move,
  };

  Operation operation = Operation::Look;  // which of these it was
  Text path;    // of the very item: deep in a tree perhaps, in the original or in the copy
  Text reason;  // in the system's words and never translated; in plain ones where this program refuses

  friend bool operator==(const FileFailure&, const FileFailure&) = default;
};

// One word, for the log.
[[nodiscard]] constexpr const char* nameOf(FileFailure::Operation operation) {
  switch (operation) {
    case FileFailure::Operation::Reach:
      return "reach";
    case FileFailure::Operation::Look:
      return "look";
    case FileFailure::Operation::List:
      return "list";
    case FileFailure::Operation::Open:
      return "open";
    case FileFailure::Operation::Read:
      return "read";
    case FileFailure::Operation::Make:
      return "make";
    case FileFailure::Operation::Write:
      return "write";
    case FileFailure::Operation::Link:
      return "link";
    case FileFailure::Operation::Metadata:
      return "metadata";
    case FileFailure::Operation::Remove:
      return "remove";
    case FileFailure::Operation::Move:
      return "move";
  }
  return "";
}

}  // namespace halvorn
