// The one routine that puts a product's bundle into its destination. The installer calls it in its own
// process where it may write, and the tool `train` calls it with administrator rights where it may not.
// Why: docs/decisions/004-where-nothing-is-installed.md
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Core/Log.h"
#include "Core/Text.h"
#include "Platform/files/FileChangeNotices.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/Trash.h"

namespace halvorn {

struct InstallServices {
  FileManager& files;
  Trash& trash;
  FileChangeNotices& notices;
  const Log& log;
};

// The numbers are the tool's exit statuses.
enum class InstallResult : std::int32_t {
  Installed = 0,
  NotTrashed = 1,  // the existing copy could not be moved to the Trash
  CopyFailed = 2,  // a wrapper item, the wrapper or the application could not be copied
};

// Installs the bundle at `source` as `destination`, a full path with the bundle's own name. The top-level
// items of the folder `wrapper`, when there is one, go into the destination's parent folder; where that
// folder is missing, the wrapper becomes it.
//
// An existing application goes to the Trash; existing items of the wrapper's names are removed for good.
//
// Where what is to be copied and what is to be replaced lie one in the other, the copy counts as failed
// before anything is touched: trashing or removing the one would take the other along.
//
// Where it can be known before that the application cannot be copied, the copy counts as failed, too, before
// anything is touched.
//
// There is no rollback: what was copied or trashed before a failure stays as it is.
// Thread: any; the caller sees to it that one installation runs at a time.
// Logs: "ERROR -- Could not delete %@", "ERROR -- Could not copy auxiliary item to %@",
//       "ERROR -- Could not copy wrapper to %@", "ERROR -- Could not trash '%@'",
//       "ERROR -- Could not trash existing %@", "ERROR -- Could not copy myself to %@";
//       before each failure what it came from, with the reason, the path of the very item and the operation:
//       "CAUSE -- %@: %@ (%@)".
[[nodiscard]] InstallResult InstallApplication(const InstallServices& services, const Text& source,
                                               const Text& destination,
                                               const OptionalText& wrapper = std::nullopt);

// Why InstallApplication would fail before it touches anything; nullopt: nothing that is known.
[[nodiscard]] std::optional<FileFailure> obstacleToInstalling(const FileManager& files, const Text& source,
                                                              const Text& destination);

// What stands in the way of the copies, and what becomes of it.
struct Replacements {
  OptionalText trashed = std::nullopt;  // the application at the destination
  std::vector<Text> removed = {};       // items of the wrapper's names, for good
};
// As it is now; changes nothing. Thread: any.
[[nodiscard]] Replacements replacementsOf(const FileManager& files, const Text& destination,
                                          const OptionalText& wrapper);

// For whoever sees beforehand that InstallApplication would fail: says why in the same words, and answers the
// same.
[[nodiscard]] InstallResult refuseToInstall(const Log& log, const FileFailure& failure,
                                            const Text& destination);

}  // namespace halvorn
