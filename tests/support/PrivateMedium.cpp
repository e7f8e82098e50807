#include "tests/support/PrivateMedium.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace halvorn {
namespace {

struct Node {
  std::uint64_t parent = 0;
  std::string name = {};
  bool isFolder = true;
  std::string bytes = {};
};

// The kernel's requests, answered from memory. Node numbers count from 1, the root.
class Server {
 public:
  Server(int device, uid_t person, const std::map<std::string, std::string>& files)
      : device_(device), person_(person) {
    nodes_.push_back(Node{.parent = 1});
    for (const auto& [path, bytes] : files) add(path, bytes);
  }

  void run() {
    std::vector<char> request(1 << 20);
    while (true) {
      const ssize_t size = ::read(device_, request.data(), request.size());
      if (size < 0 && errno == ENODEV) return;  // unmounted
      if (size >= static_cast<ssize_t>(sizeof(fuse_in_header))) answer(request.data());
    }
  }

 private:
  void add(const std::string& path, const std::string& bytes) {
    std::uint64_t at = 1;
    std::size_t start = 0;
    while (true) {
      const std::size_t slash = path.find('/', start);
      const std::string name = path.substr(start, slash - start);
      std::uint64_t next = find(at, name);
      if (next == 0) {
        nodes_.push_back(Node{.parent = at, .name = name});
        next = nodes_.size();
      }
      at = next;
      if (slash == std::string::npos) break;
      start = slash + 1;
    }
    node(at).isFolder = false;
    node(at).bytes = bytes;
  }

  Node& node(std::uint64_t number) { return nodes_.at(number - 1); }

  [[nodiscard]] std::uint64_t find(std::uint64_t parent, const std::string& name) const {
    for (std::size_t index = 1; index < nodes_.size(); ++index) {
      if (nodes_[index].parent == parent && nodes_[index].name == name) return index + 1;
    }
    return 0;
  }

  fuse_attr attributes(std::uint64_t number) {
    fuse_attr result{};
    result.ino = number;
    result.size = node(number).bytes.size();
    result.blocks = (result.size + 511) / 512;
    result.mode = node(number).isFolder ? S_IFDIR | 0755 : S_IFREG | 0755;
    result.nlink = 1;
    result.uid = person_;
    result.gid = person_;
    result.blksize = 4096;
    return result;
  }

  void reply(const fuse_in_header& to, int error, const void* data = nullptr, std::size_t size = 0) const {
    fuse_out_header header{};
    header.unique = to.unique;
    header.error = -error;
    header.len = static_cast<std::uint32_t>(sizeof header + size);
    std::array<iovec, 2> parts{iovec{&header, sizeof header}, iovec{const_cast<void*>(data), size}};
    if (::writev(device_, parts.data(), size > 0 ? 2 : 1) < 0) return;
  }

  void answer(const char* request) {
    fuse_in_header header{};
    std::memcpy(&header, request, sizeof header);
    const char* body = request + sizeof header;
    switch (header.opcode) {
      case FUSE_INIT: {
        fuse_init_out out{};
        out.major = FUSE_KERNEL_VERSION;
        out.minor = FUSE_KERNEL_MINOR_VERSION;
        out.max_write = 4096;
        return reply(header, 0, &out, sizeof out);
      }
      case FUSE_LOOKUP: {
        const std::uint64_t found = find(header.nodeid, body);
        if (found == 0) return reply(header, ENOENT);
        fuse_entry_out out{};
        out.nodeid = found;
        out.attr = attributes(found);
        return reply(header, 0, &out, sizeof out);
      }
      case FUSE_GETATTR: {
        fuse_attr_out out{};
        out.attr = attributes(header.nodeid);
        return reply(header, 0, &out, sizeof out);
      }
      case FUSE_OPEN:
      case FUSE_OPENDIR: {
        fuse_open_out out{};
        return reply(header, 0, &out, sizeof out);
      }
      case FUSE_READ: {
        fuse_read_in in{};
        std::memcpy(&in, body, sizeof in);
        const std::string& bytes = node(header.nodeid).bytes;
        const std::size_t start = std::min<std::size_t>(in.offset, bytes.size());
        return reply(header, 0, bytes.data() + start, std::min<std::size_t>(in.size, bytes.size() - start));
      }
      case FUSE_READDIR:
        return list(header, body);
      case FUSE_STATFS: {
        fuse_statfs_out out{};
        out.st.namelen = 255;
        return reply(header, 0, &out, sizeof out);
      }
      case FUSE_RELEASE:
      case FUSE_RELEASEDIR:
      case FUSE_FLUSH:
        return reply(header, 0);
      case FUSE_FORGET:
      case FUSE_BATCH_FORGET:
      case FUSE_INTERRUPT:
        return;  // they want no answer
      default:
        return reply(header, ENOSYS);
    }
  }

  void list(const fuse_in_header& header, const char* body) {
    fuse_read_in in{};
    std::memcpy(&in, body, sizeof in);
    std::string entries;
    std::uint64_t position = 0;
    for (std::size_t index = 1; index < nodes_.size(); ++index) {
      if (nodes_[index].parent != header.nodeid || ++position <= in.offset) continue;
      fuse_dirent entry{};
      entry.ino = index + 1;
      entry.off = position;
      entry.namelen = static_cast<std::uint32_t>(nodes_[index].name.size());
      entry.type = nodes_[index].isFolder ? S_IFDIR >> 12 : S_IFREG >> 12;
      std::string bytes(reinterpret_cast<const char*>(&entry), FUSE_NAME_OFFSET);
      bytes += nodes_[index].name;
      bytes.resize(FUSE_DIRENT_ALIGN(bytes.size()));
      if (entries.size() + bytes.size() > in.size) break;
      entries += bytes;
    }
    reply(header, 0, entries.data(), entries.size());
  }

  int device_;
  uid_t person_;
  std::vector<Node> nodes_;
};

}  // namespace

std::optional<std::string> PrivateMedium::missing() {
  const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
  if (device < 0) return std::string("no /dev/fuse: ") + std::strerror(errno);
  ::close(device);
  return std::nullopt;
}

PrivateMedium::PrivateMedium(const std::string& folder, uid_t person,
                             const std::map<std::string, std::string>& files)
    : folder_(folder) {
  const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
  if (device < 0) throw std::runtime_error("/dev/fuse");
  const std::string options = "fd=" + std::to_string(device) +
                              ",rootmode=40000,user_id=" + std::to_string(person) +
                              ",group_id=" + std::to_string(person);
  if (::mount("halvorn-medium", folder.c_str(), "fuse.halvorn", MS_NOSUID | MS_NODEV, options.c_str()) != 0) {
    const int error = errno;
    ::close(device);
    throw std::runtime_error(std::string("FUSE: ") + std::strerror(error));
  }
  server_ = ::fork();
  if (server_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    Server(device, person, files).run();
    ::_exit(0);
  }
  ::close(device);
}

PrivateMedium::~PrivateMedium() {
  ::umount2(folder_.c_str(), MNT_DETACH);
  if (server_ <= 0) return;
  ::kill(server_, SIGKILL);
  ::waitpid(server_, nullptr, 0);
}

}  // namespace halvorn
