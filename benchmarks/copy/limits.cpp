// limits empty|write|read FROM TO THREADS: the least that copying such a tree can cost. "empty" makes the
// folders and empty files, "write" fills the files from memory as well; nothing is read, and nothing but
// names and sizes is the same. "read" reads the files into memory and makes nothing. Prints wall seconds and
// processor seconds of that alone, and peak memory in kilobytes.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

struct File {
  std::string name;
  long long size = 0;
};

struct Folder {
  std::string from;
  std::string path;
  std::vector<File> files = {};
};

std::vector<Folder> foldersOf(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::vector<Folder> folders{{from, to}};
  std::map<std::string, std::size_t> numbers{{from, 0}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(from)) {
    if (entry.is_symlink()) continue;
    if (entry.is_directory()) {
      numbers[entry.path()] = folders.size();
      folders.push_back({entry.path(), to / entry.path().lexically_relative(from)});
    } else if (entry.is_regular_file()) {
      struct stat facts {};
      if (::lstat(entry.path().c_str(), &facts) != 0) continue;
      // Holes are not filled.
      const long long size = std::min<long long>(facts.st_size, facts.st_blocks * 512LL);
      folders[numbers[entry.path().parent_path()]].files.push_back({entry.path().filename(), size});
    }
  }
  return folders;
}

bool fill(int file, long long size, const std::vector<char>& bytes) {
  if (size >= 1 << 20) (void)!::fallocate(file, 0, 0, size);
  while (size > 0) {
    const auto count =
        static_cast<std::size_t>(std::min<long long>(size, static_cast<long long>(bytes.size())));
    if (::write(file, bytes.data(), count) != static_cast<ssize_t>(count)) return false;
    size -= static_cast<long long>(count);
  }
  return true;
}

bool readAll(const Folder& folder, std::vector<char>& bytes) {
  for (const File& each : folder.files) {
    const int file = ::open((folder.from + "/" + each.name).c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return false;
    ssize_t count = 0;
    do {
      count = ::read(file, bytes.data(), bytes.size());
    } while (count > 0);
    ::close(file);
    if (count < 0) return false;
  }
  return true;
}

// The folder above may be another thread's, and not be there yet.
bool makeFolder(const std::string& path) {
  while (::mkdir(path.c_str(), 0755) != 0) {
    if (errno != ENOENT) return false;
    std::this_thread::yield();
  }
  return true;
}

bool makeAll(const Folder& folder, bool isFilled, const std::vector<char>& bytes) {
  if (!makeFolder(folder.path)) return false;
  const int at = ::open(folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  bool isGood = at >= 0;
  for (const File& each : folder.files) {
    const int file = ::openat(at, each.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0 || (isFilled && !fill(file, each.size, bytes))) isGood = false;
    if (file >= 0) ::close(file);
    if (!isGood) break;
  }
  if (at >= 0) ::close(at);
  return isGood;
}

// One folder, one thread: two in one folder wait for each other.
bool doAll(const std::vector<Folder>& folders, const std::string& kind, unsigned threads) {
  std::atomic<std::size_t> next = 0;
  std::atomic<bool> isGood = true;
  const auto work = [&] {
    std::vector<char> bytes(128 * 1024, 'w');
    for (std::size_t i = next++; i < folders.size() && isGood; i = next++) {
      const bool isDone =
          kind == "read" ? readAll(folders[i], bytes) : makeAll(folders[i], kind == "write", bytes);
      if (!isDone) isGood = false;
    }
  };
  std::vector<std::thread> workers;
  for (unsigned i = 1; i < threads; ++i) workers.emplace_back(work);
  work();
  for (std::thread& worker : workers) worker.join();
  return isGood;
}

double now(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5) {
    std::fputs("usage: limits empty|write|read from to threads\n", stderr);
    return 64;
  }
  const std::string kind = arguments[1];
  const std::vector<Folder> folders = foldersOf(arguments[2], arguments[3]);
  const auto threads = static_cast<unsigned>(std::max(1, std::atoi(arguments[4])));
  const double wall = now(CLOCK_MONOTONIC);
  const double processor = now(CLOCK_PROCESS_CPUTIME_ID);
  if (!doAll(folders, kind, threads)) return 1;
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  std::printf("%f %f %ld\n", now(CLOCK_MONOTONIC) - wall, now(CLOCK_PROCESS_CPUTIME_ID) - processor,
              usage.ru_maxrss);
  return 0;
}
