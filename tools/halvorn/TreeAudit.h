// An installed tree beside what it was copied from: what differs, and whether that is as it must be.
//
// What it must be is asked of those who make the copy: which mode, which attributes, and, on the administrator's road,
// which owner.
#pragma once

#include <string>
#include <vector>

#include "Platform/files/posix/copy/FileMetadata.h"

namespace halvorn {

struct TreeDifference {
  std::string path;  // below the top; "" for that itself
  std::string kind;  // "missing", "extra", "kind", "bytes", "size", "link", "names", "owner", "mode", "time",
                     // "attribute", "unreadable"
  std::string detail = {};
  bool isAsItMust = false;
};

struct TreeAudit {
  Ownership road = Ownership::Kept;
  std::size_t items = 0;  // of the source
  std::vector<TreeDifference> differences = {};

  [[nodiscard]] std::size_t faults() const;
};

// Follows no link and opens nothing but files and folders. The road is the one that explains more.
[[nodiscard]] TreeAudit auditOf(const std::string& source, const std::string& installed);

}  // namespace halvorn
