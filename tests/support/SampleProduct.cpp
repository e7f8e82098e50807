#include "tests/support/SampleProduct.h"

#include <fstream>
#include <sstream>

namespace halvorn {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

std::string entry(const std::string& key, const std::string& value) {
  return "  <key>" + key + "</key>\n  <string>" + value + "</string>\n";
}

std::string infoPlist(const SampleProduct& product) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n<dict>\n";
  text += entry("CFBundleName", product.name);
  text += entry("CFBundleIdentifier", "example.halvorn." + product.name);
  text += entry("CFBundleExecutable", product.name);
  text += entry("CFBundlePackageType", "APPL");
  text += entry("CFBundleShortVersionString", product.version);
  text += entry("CFBundleVersion", product.version);
  if (product.signature) text += entry("CFBundleSignature", *product.signature);
  if (product.minSystemVersion) text += entry("LSMinimumSystemVersion", *product.minSystemVersion);
  if (product.hasIcon) text += entry("CFBundleIconFile", "Sample.png");
  return text + "</dict>\n</plist>\n";
}

}  // namespace

fs::path makeSampleProduct(const fs::path& folder, const SampleProduct& product) {
  const fs::path bundle = folder / (product.name + ".app");
  const fs::path contents = bundle / "Contents";
  write(contents / "Info.plist", infoPlist(product));
  write(contents / "Resources/version.txt", product.version + "\n");
  if (product.hasIcon) {
    fs::copy_file(fs::path(KT_SOURCE_DIR) / "samples/Sample.png", contents / "Resources/Sample.png",
                  fs::copy_options::overwrite_existing);
  }
  const fs::path program =
      product.program.empty() ? fs::path(KT_BINARY_DIR) / "samples/Sample" : product.program;
  fs::create_directories(contents / product.programFolder);
  fs::copy_file(program, contents / product.programFolder / product.name,
                fs::copy_options::overwrite_existing);
  return bundle;
}

fs::path makeReadMe(const fs::path& folder) {
  const fs::path path = folder / "Read Me.rtf";
  write(path,
        "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fswiss "
        "Helvetica;}}{\\colortbl;\\red40\\green90\\blue160;}\n"
        "\\f0\\fs36\\b\\cf1 Welcome to Sample 2\\b0\\cf0\\fs24\\par\n\\par\n"
        "Sample is a product that has nothing to do but run. This version runs \\i better\\i0  than the one "
        "before:\\par\n"
        "\\par\n\\bullet  It has a window.\\par\n\\bullet  The window says which version it is.\\par\n"
        "\\bullet  Gr\\'fc\\'dfe aus der Werkstatt \\u9786?.\\par\n\\par\n"
        "Your documents stay where they are. The version you have now goes to the Trash.\\par\n}\n");
  return path;
}

fs::path makeGuide(const fs::path& folder) {
  const fs::path path = folder / "Guide.html";
  write(path,
        "<!doctype html><title>Sample Guide</title><h1>Sample</h1><p>Open it. Look at it. Close it.</p>\n");
  return path;
}

std::string versionOfBundle(const fs::path& bundle) {
  std::ifstream file(bundle / "Contents/Resources/version.txt");
  std::string line;
  std::getline(file, line);
  return line;
}

}  // namespace halvorn
