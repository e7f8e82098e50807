// A program that writes down how it was started, into the file "report" beside its
// bundle (or beside itself), and ends.
//
// One fact a line: "uid 1000", "variable HOME=/home/anna", "descriptor 0 /dev/null" and so on.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string statusLine(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return line.substr(line.find_last_of(" \t") + 1);
  }
  return "?";
}

std::string descriptors() {
  std::ostringstream lines;
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    std::error_code error;
    const fs::path target = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
    if (!error) lines << "descriptor " << descriptor << " " << target.string() << "\n";
  }
  return lines.str();
}

rlim_t descriptorLimit() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  return limit.rlim_cur;
}

std::string groups() {
  gid_t list[NGROUPS_MAX];
  const int count = ::getgroups(NGROUPS_MAX, list);
  std::ostringstream line;
  line << "groups";
  for (int i = 0; i < count; ++i) line << " " << list[i];
  line << "\n";
  return line.str();
}

std::string variables() {
  std::ostringstream lines;
  for (char** entry = environ; *entry != nullptr; ++entry) lines << "variable " << *entry << "\n";
  return lines.str();
}

fs::path reportPath(const fs::path& program) {
  const std::string path = program.string();
  const std::size_t bundle = path.find(".app/");
  return bundle == std::string::npos ? program.parent_path() / "report"
                                     : fs::path(path.substr(0, bundle)).parent_path() / "report";
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path report = reportPath(fs::read_symlink("/proc/self/exe"));
  const fs::path unfinished = report.string() + ".unfinished";
  const std::string opened = descriptors();
  const mode_t mask = ::umask(022);
  std::ofstream file(unfinished);
  file << "uid " << ::getuid() << " " << ::geteuid() << "\n"
       << "gid " << ::getgid() << " " << ::getegid() << "\n"
       << groups() << "folder " << fs::current_path().string() << "\n"
       << "mask " << std::oct << mask << std::dec << "\n"
       << "pid " << ::getpid() << "\n"
       << "limit " << descriptorLimit() << "\n"
       << "session " << (::getsid(0) == ::getpid() ? "own" : "foreign") << "\n"
       << "parent " << ::getppid() << "\n"
       << "blocked " << statusLine("SigBlk") << "\n"
       << "ignored " << statusLine("SigIgn") << "\n"
       << opened << variables();
  for (int i = 1; i < argc; ++i) file << "argument " << argv[i] << "\n";
  file.close();
  fs::rename(unfinished, report);
  return 0;
}
