// The log line on standard error and, where the journal runs, one structured entry for it.
//
// The entry goes out as one datagram of the journal's documented native protocol; the log never waits for the
// journal, what it does not take at once is lost there. Where standard error itself leads to the journal, the
// entry alone is written, so that an event is never in it twice.
#pragma once

#include <string>

#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/StandardErrorLog.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

class JournalLog : public StandardErrorLog {
 public:
  JournalLog(const Clock& clock, const Text& programName, const Environment& environment,
             const std::string& journalSocket = "/run/systemd/journal/socket");

 protected:
  void write(const Text& line) const override;

 private:
  [[nodiscard]] bool send(const Text& line) const;
  [[nodiscard]] bool sendAsFile(const std::string& entry) const;
  [[nodiscard]] bool isStandardErrorJournal() const;

  std::string journalStream_;  // device and inode of a stream that leads to the journal, "8:4711"
  std::string socketPath_;
  FileDescriptor socket_;  // not connected, so that a journal that starts later is found
};

}  // namespace halvorn
