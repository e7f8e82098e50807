#include "tests/support/SampleTrees.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace halvorn::SampleTrees {
namespace {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }
  // Every order of magnitude between the two as likely as any other.
  std::uint64_t size(std::uint64_t least, std::uint64_t most) {
    const double fraction = static_cast<double>(next() >> 11) / 9007199254740992.0;
    const double ratio = static_cast<double>(most) / static_cast<double>(least);
    return static_cast<std::uint64_t>(static_cast<double>(least) * std::pow(ratio, fraction));
  }

 private:
  std::uint64_t state_;
};

void require(bool isTrue, const std::string& what) {
  if (!isTrue) throw std::runtime_error(what + ": " + std::strerror(errno));
}

void makeFolder(const std::string& path) { require(::mkdir(path.c_str(), 0755) == 0, "mkdir " + path); }
void makeLink(const std::string& target, const std::string& path) {
  require(::symlink(target.c_str(), path.c_str()) == 0, "symlink " + path);
}

// Every other 32 bytes are noise, the rest is one letter: it compresses about as well as programs do, and no
// two files are the same, which an image would keep as one.
void fill(std::vector<std::uint64_t>& words, Random& random) {
  for (std::size_t i = 0; i < words.size(); ++i)
    words[i] = (i & 4) == 0 ? random.next() : 0x6161616161616161u;
}

void makeFile(const std::string& path, std::uint64_t bytes, Random& random, mode_t mode = 0644) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  require(file >= 0, "open " + path);
  std::vector<std::uint64_t> words(std::min<std::uint64_t>(bytes / 8 + 1, std::uint64_t{128} * 1024));
  for (std::uint64_t left = bytes; left > 0;) {
    fill(words, random);
    const std::size_t count = std::min<std::uint64_t>(left, words.size() * 8);
    require(::write(file, words.data(), count) == static_cast<ssize_t>(count), "write " + path);
    left -= count;
  }
  ::close(file);
}

void makeSparseFile(const std::string& path, Random& random) {
  makeFile(path, 4096 + random.next() % 5000, random);
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  require(file >= 0 && ::pwrite(file, "middle", 6, 3'000'000) == 6, "write " + path);
  require(::ftruncate(file, 9'000'000) == 0, "truncate " + path);
  ::close(file);
}

std::uint64_t makeFramework(const std::string& folder, int number, std::uint64_t size, Random& random) {
  const std::string name = "Part" + std::to_string(number);
  const std::string top = folder + "/" + name + ".framework";
  for (const char* part : {"", "/Versions", "/Versions/5", "/Versions/5/Resources", "/Versions/5/Headers"}) {
    makeFolder(top + part);
  }
  makeLink("5", top + "/Versions/Current");
  for (const std::string& part : {name, std::string("Resources"), std::string("Headers")}) {
    makeLink("Versions/Current/" + part, top + "/" + part);
  }
  makeFile(top + "/Versions/5/" + name, size, random, 0755);
  makeFile(top + "/Versions/5/Resources/Info.plist", 900, random);
  std::uint64_t made = size;
  for (int i = 0; i < 40; ++i) {
    const std::uint64_t bytes = random.size(500, 20'000);
    makeFile(top + "/Versions/5/Headers/" + name + std::to_string(i) + ".h", bytes, random);
    made += bytes;
  }
  return made;
}

void setAttribute(const std::string& path, const std::string& name, std::size_t bytes) {
  const std::string value(bytes, 'v');
  // A file system without attributes makes the tree poorer, not wrong.
  (void)::setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0);
}

void makeDeepLevel(const std::string& folder, int level, const std::string& top, Random& random) {
  makeFile(folder + "/file", random.size(100, 30'000), random, level % 3 == 0 ? 0755 : 0644);
  makeFile(folder + "/attributed", random.size(100, 3'000), random, 0600);
  setAttribute(folder + "/attributed", "user.origin", 60);
  setAttribute(folder, "user.folder", 20);
  makeLink("file", folder + "/link");
  makeLink("../nowhere/" + std::to_string(level), folder + "/broken");
  require(::link((folder + "/file").c_str(), (folder + "/hard").c_str()) == 0, "link " + folder);
  const std::string across = top + "/across-" + std::to_string(random.next());
  require(::link((folder + "/attributed").c_str(), across.c_str()) == 0, "link " + across);
  if (level % 8 == 0) makeSparseFile(folder + "/sparse", random);
}

}  // namespace

void makeSmallFiles(const std::string& path, int files) {
  Random random(1);
  makeFolder(path);
  for (int made = 0, folder = 0; made < files; ++folder) {
    const std::string group = path + "/group" + std::to_string(folder / 10);
    if (folder % 10 == 0) makeFolder(group);
    const std::string inner = group + "/folder" + std::to_string(folder);
    makeFolder(inner);
    for (int i = 0; i < 30 && made < files; ++i, ++made) {
      makeFile(inner + "/file" + std::to_string(i) + ".txt", random.size(200, 16'000), random);
    }
  }
}

void makeMixed(const std::string& path, std::uint64_t bytes) {
  Random random(2);
  for (const char* part : {"", "/Contents", "/Contents/Frameworks", "/Contents/Resources"})
    makeFolder(path + part);
  std::uint64_t made = 0;
  for (int number = 0; made < bytes * 85 / 100; ++number) {
    const std::uint64_t size =
        std::min(random.size(bytes / 400 + 1, bytes / 10 + 1), bytes * 85 / 100 - made + 1);
    made += makeFramework(path + "/Contents/Frameworks", number, size, random);
  }
  for (int number = 0; made < bytes; ++number) {
    const std::string folder = path + "/Contents/Resources/" + std::to_string(number / 100);
    if (number % 100 == 0) makeFolder(folder);
    const std::uint64_t size = random.size(1'000, bytes / 600 + 1'001);
    makeFile(folder + "/resource" + std::to_string(number) + ".bin", size, random);
    made += size;
  }
}

void makeBigFile(const std::string& path, std::uint64_t bytes) {
  Random random(3);
  makeFolder(path);
  makeFile(path + "/big.bin", bytes, random);
}

void makeDeep(const std::string& path, int levels, int branches) {
  Random random(4);
  makeFolder(path);
  for (int branch = 0; branch < branches; ++branch) {
    std::string folder = path;
    for (int level = 0; level < levels; ++level) {
      folder += level == 0 ? "/branch" + std::to_string(branch) : "/level" + std::to_string(level);
      makeFolder(folder);
      makeDeepLevel(folder, level, path, random);
    }
  }
}

void makeManyFiles(const std::string& path, int files, int filesPerFolder) {
  makeFolder(path);
  std::string folder;
  for (int made = 0; made < files; ++made) {
    if (made % filesPerFolder == 0) {
      folder = path + "/folder" + std::to_string(made / filesPerFolder);
      makeFolder(folder);
    }
    const std::string file = folder + "/" + std::to_string(made);
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    require(descriptor >= 0, "open " + file);
    ::close(descriptor);
  }
}

}  // namespace halvorn::SampleTrees
