#include "Platform/processes/linux/proc/ProcFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <climits>
#include <memory>

namespace halvorn {
namespace {

constexpr std::size_t kStatLimit = 4096;
constexpr std::size_t kStatusLimit = 16UL * 1024;
constexpr std::size_t kArgumentsLimit = 64UL * 1024;
constexpr std::size_t kEnvironmentLimit = 1024UL * 1024;

// Fields of "stat", counted as in its documentation.
constexpr int kStateField = 3;
constexpr int kUserTicksField = 14;
constexpr int kThreadsField = 20;
constexpr int kStartTicksField = 22;

template <typename Number>
std::optional<Number> numberFrom(std::string_view text) {
  Number number{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

std::vector<std::string_view> words(std::string_view text) {
  std::vector<std::string_view> result;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = text.find_first_not_of(" \t\n", i);
    if (start == std::string_view::npos) break;
    i = std::min(text.find_first_of(" \t\n", start), text.size());
    result.push_back(text.substr(start, i - start));
  }
  return result;
}

// What stands behind "Name:" at the start of a line.
std::optional<std::string_view> lineOf(std::string_view content, std::string_view name) {
  for (std::size_t start = 0; start < content.size();) {
    const std::size_t end = std::min(content.find('\n', start), content.size());
    const std::string_view line = content.substr(start, end - start);
    if (line.starts_with(name)) return line.substr(name.size());
    start = end + 1;
  }
  return std::nullopt;
}

// "4711/name"; thousands are made for one walk, so none is put on the heap.
class ProcPath {
 public:
  ProcPath(pid_t pid, std::string_view name) {
    char* end = std::to_chars(path_, path_ + kDigits, pid).ptr;
    *end++ = '/';
    end += name.copy(end, static_cast<std::size_t>(path_ + sizeof path_ - end - 1));
    *end = '\0';
  }
  [[nodiscard]] const char* get() const { return path_; }

 private:
  static constexpr std::size_t kDigits = 12;  // of any process id, and room behind them
  char path_[64];
};

FileIdentity identityFrom(const struct stat& item) { return {item.st_dev, item.st_ino}; }

}  // namespace

std::optional<ProcStat> parseProcStat(std::string_view content) {
  const std::size_t open = content.find('(');
  const std::size_t close = content.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return std::nullopt;
  const auto fields = words(content.substr(close + 1));
  const auto field = [&](int number) { return fields[static_cast<std::size_t>(number - kStateField)]; };
  if (fields.size() <= kStartTicksField - kStateField) return std::nullopt;
  const auto userTicks = numberFrom<std::uint64_t>(field(kUserTicksField));
  const auto startTicks = numberFrom<std::uint64_t>(field(kStartTicksField));
  const auto threads = numberFrom<std::uint64_t>(field(kThreadsField));
  if (!userTicks || !threads || !startTicks) return std::nullopt;
  return ProcStat{std::string(content.substr(open + 1, close - open - 1)), field(kStateField)[0], *userTicks,
                  *threads, *startTicks};
}

std::optional<ProcStatus> parseProcStatus(std::string_view content) {
  // The name is escaped here, so that it cannot pass for a line.
  const auto users = lineOf(content, "Uid:");
  const auto userWords = users ? words(*users) : std::vector<std::string_view>();
  if (userWords.size() < 2) return std::nullopt;
  const auto real = numberFrom<uid_t>(userWords[0]);
  const auto effective = numberFrom<uid_t>(userWords[1]);
  if (!real || !effective) return std::nullopt;
  ProcStatus status{*real, *effective, {}};
  if (const auto pids = lineOf(content, "NSpid:")) {
    for (const std::string_view word : words(*pids)) {
      if (const auto pid = numberFrom<pid_t>(word)) status.namespacePids.push_back(*pid);
    }
  }
  return status;
}

std::vector<std::string> splitAtZero(std::string_view content) {
  std::vector<std::string> result;
  for (std::size_t start = 0; start < content.size();) {
    const std::size_t end = std::min(content.find('\0', start), content.size());
    result.emplace_back(content.substr(start, end - start));
    start = end + 1;
  }
  return result;
}

std::optional<FileIdentity> identityOfFile(const std::string& path) {
  struct stat item {};
  return ::stat(path.c_str(), &item) == 0 ? std::optional(identityFrom(item)) : std::nullopt;
}

ProcFiles::ProcFiles(const std::string& root)
    : root_(root), folder_(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

std::vector<pid_t> ProcFiles::pids() const {
  std::vector<pid_t> result;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(root_.c_str()), ::closedir);
  if (!folder) return result;
  while (const dirent* entry = ::readdir(folder.get())) {
    const auto pid = numberFrom<pid_t>(entry->d_name);
    if (pid && *pid > 1) result.push_back(*pid);
  }
  return result;
}

std::optional<std::string> ProcFiles::read(pid_t pid, const char* name, std::size_t limit) const {
  const FileDescriptor file(::openat(folder_.get(), ProcPath(pid, name).get(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  std::string content;
  char buffer[16 * 1024];
  while (content.size() < limit) {
    const ssize_t count = retried([&] { return ::read(file.get(), buffer, sizeof buffer); });
    if (count < 0) return std::nullopt;
    content.append(buffer, static_cast<std::size_t>(count));
    // The kernel fills what it is given, so a short answer is the last one.
    if (static_cast<std::size_t>(count) < sizeof buffer) break;
  }
  return content;
}

std::optional<std::string> ProcFiles::readLink(pid_t pid, const char* name) const {
  char target[PATH_MAX + 32];
  const ssize_t count = ::readlinkat(folder_.get(), ProcPath(pid, name).get(), target, sizeof target);
  if (count < 0 || static_cast<std::size_t>(count) == sizeof target) return std::nullopt;
  return std::string(target, static_cast<std::size_t>(count));
}

std::optional<ProcStat> ProcFiles::stat(pid_t pid) const {
  const auto content = read(pid, "stat", kStatLimit);
  return content ? parseProcStat(*content) : std::nullopt;
}

std::optional<ProcStatus> ProcFiles::status(pid_t pid) const {
  const auto content = read(pid, "status", kStatusLimit);
  return content ? parseProcStatus(*content) : std::nullopt;
}

std::optional<std::string> ProcFiles::executableLink(pid_t pid) const { return readLink(pid, "exe"); }

std::optional<FileIdentity> ProcFiles::identity(pid_t pid, const char* name) const {
  struct stat item {};
  return ::fstatat(folder_.get(), ProcPath(pid, name).get(), &item, 0) == 0
             ? std::optional(identityFrom(item))
             : std::nullopt;
}

std::optional<FileIdentity> ProcFiles::executable(pid_t pid) const { return identity(pid, "exe"); }

bool ProcFiles::runsFile(pid_t pid, const std::string& path) const {
  const auto running = executable(pid);
  return running && running == identityOfFile(path);
}

bool ProcFiles::sharesMounts(pid_t pid) const {
  const auto other = identity(pid, "ns/mnt");
  return other && other == identity(::getpid(), "ns/mnt");
}

std::optional<std::string> ProcFiles::workingFolder(pid_t pid) const { return readLink(pid, "cwd"); }

std::vector<ino_t> ProcFiles::sockets(pid_t pid) const {
  constexpr std::string_view kBefore = "socket:[";
  std::vector<ino_t> result;
  const int opened = ::openat(folder_.get(), ProcPath(pid, "fd").get(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return result;
  // It closes the descriptor.
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::fdopendir(opened), ::closedir);
  if (!folder) return result;
  while (const dirent* entry = ::readdir(folder.get())) {
    char target[64];
    const ssize_t count = ::readlinkat(::dirfd(folder.get()), entry->d_name, target, sizeof target);
    if (count <= 0) continue;
    const std::string_view link(target, static_cast<std::size_t>(count));
    if (!link.starts_with(kBefore) || !link.ends_with(']')) continue;
    const auto number = numberFrom<ino_t>(link.substr(kBefore.size(), link.size() - kBefore.size() - 1));
    if (number) result.push_back(*number);
  }
  return result;
}

std::string ProcFiles::commandLine(pid_t pid) const {
  return read(pid, "cmdline", kArgumentsLimit).value_or("");
}

std::vector<std::string> ProcFiles::environment(pid_t pid) const {
  return splitAtZero(read(pid, "environ", kEnvironmentLimit).value_or(""));
}

}  // namespace halvorn
