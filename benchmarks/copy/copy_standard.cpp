// copy_standard FROM TO: the standard library's own recursive copy, links as links.
#include <cstdio>
#include <filesystem>
#include <system_error>

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::fputs("usage: copy_standard from to\n", stderr);
    return 64;
  }
  using std::filesystem::copy_options;
  std::error_code error;
  std::filesystem::copy(arguments[1], arguments[2], copy_options::recursive | copy_options::copy_symlinks,
                        error);
  if (error) std::fprintf(stderr, "copy_standard: %s\n", error.message().c_str());
  return error ? 1 : 0;
}
