// limits empty|write FROM TO THREADS: the least that making such a tree can cost. "empty" makes the folders
// and empty files, "write" fills the files from memory as well. Nothing is read, and nothing but names and
// sizes is the same.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Item {
  std::string path;
  long long size = 0;
};

bool fill(int file, long long size, const std::vector<char>& bytes) {
  while (size > 0) {
    const auto count =
        static_cast<std::size_t>(std::min<long long>(size, static_cast<long long>(bytes.size())));
    if (::write(file, bytes.data(), count) != static_cast<ssize_t>(count)) return false;
    size -= static_cast<long long>(count);
  }
  return true;
}

bool makeAll(const std::vector<Item>& files, bool isFilled, unsigned threads) {
  std::atomic<std::size_t> next = 0;
  std::atomic<bool> isGood = true;
  const auto work = [&] {
    const std::vector<char> bytes(128 * 1024, 'w');
    for (std::size_t i = next++; i < files.size() && isGood; i = next++) {
      const int file = ::open(files[i].path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
      if (file < 0 || (isFilled && !fill(file, files[i].size, bytes))) isGood = false;
      if (file >= 0) ::close(file);
    }
  };
  std::vector<std::thread> workers;
  for (unsigned i = 0; i < threads; ++i) workers.emplace_back(work);
  for (std::thread& worker : workers) worker.join();
  return isGood;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5) {
    std::fputs("usage: limits empty|write from to threads\n", stderr);
    return 64;
  }
  const std::string kind = arguments[1];
  const std::filesystem::path from = arguments[2];
  const std::filesystem::path to = arguments[3];
  std::vector<Item> files;
  std::filesystem::create_directory(to);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(from)) {
    const auto target = to / entry.path().lexically_relative(from);
    if (entry.is_symlink()) continue;
    if (entry.is_directory()) std::filesystem::create_directory(target);
    if (entry.is_regular_file())
      files.push_back({target.string(), static_cast<long long>(entry.file_size())});
  }
  return makeAll(files, kind == "write", static_cast<unsigned>(std::max(1, std::atoi(arguments[4])))) ? 0 : 1;
}
