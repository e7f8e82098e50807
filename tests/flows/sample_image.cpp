// Puts a sample product with its read-me and guide into a folder. usage: sample_image FOLDER VERSION
#include <cstdio>
#include <filesystem>

#include "tests/support/SampleProduct.h"

int main(int argc, char** argv) {
  using namespace halvorn;
  if (argc != 3) {
    std::fputs("usage: sample_image FOLDER VERSION\n", stderr);
    return 64;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  makeSampleProduct(folder, {.version = argv[2]});
  makeReadMe(folder);
  makeGuide(folder);
  return 0;
}
