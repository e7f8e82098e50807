// make_tree KIND FOLDER [SIZE]: makes one of the sample trees.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tests/support/SampleTrees.h"

int main(int argumentCount, char** arguments) {
  using namespace halvorn;
  if (argumentCount < 3) {
    std::fputs("usage: make_tree small|mixed|big|deep|one-folder|many-folders folder [size]\n", stderr);
    return 64;
  }
  const std::string kind = arguments[1];
  const std::string folder = arguments[2];
  const long long size = argumentCount > 3 ? std::atoll(arguments[3]) : 0;
  const auto sizeOr = [&](long long usual) { return size > 0 ? size : usual; };
  try {
    if (kind == "small") SampleTrees::makeSmallFiles(folder, static_cast<int>(sizeOr(12'000)));
    if (kind == "mixed") SampleTrees::makeMixed(folder, static_cast<std::uint64_t>(sizeOr(1'200'000'000)));
    if (kind == "big") SampleTrees::makeBigFile(folder, static_cast<std::uint64_t>(sizeOr(3'000'000'000)));
    if (kind == "deep") SampleTrees::makeDeep(folder, static_cast<int>(sizeOr(60)), 20);
    if (kind == "one-folder") SampleTrees::makeManyFiles(folder, static_cast<int>(sizeOr(1'000)), 1'000'000);
    if (kind == "many-folders") SampleTrees::makeManyFiles(folder, static_cast<int>(sizeOr(1'000)), 30);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_tree: %s\n", error.what());
    return 1;
  }
  return 0;
}
