// A real product that runs on a desktop, against what is in its bundle's own files
// and what the system's tools say.
#include <unistd.h>

#include <QImage>
#include <cmath>
#include <fstream>
#include <sstream>

#include "Platform/text/linux/CryptoDigests.h"
#include "Platform/window/linux/pictures/QtImage.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "tests/processes/adapter/LiveFixture.h"
#include "tests/support/OffscreenApplication.h"
#include "tests/support/OwnProcessorTimes.h"
#include "tests/support/SampleProduct.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class RealSample : public LiveFixture {
 protected:
  void SetUp() override {
    startDesktop({.bus = false});
    if (!desktop) return;
    toolkit.SetUp();
    watch({.display = desktop->displayName(), .images = &images, .digests = &digests});
    live->processes.installNotifications();  // so that windows wake the loop
  }
  void TearDown() override {
    children.clear();
    live = nullptr;
    if (desktop) toolkit.TearDown();
  }
  // Starts the product; returns its object once its window is there.
  KTProcessPointer run(const SampleProduct& product) {
    bundle = makeSampleProduct(folder.path(), product);
    const pid_t pid = launch({bundle / "Contents" / product.programFolder / product.name}).pid();
    EXPECT_TRUE(live->settles([&] {
      const auto owners = live->windows.owners();
      return std::find(owners.begin(), owners.end(), pid) != owners.end();
    })) << children.back().output();
    return process(children.back());
  }
  // What the tool prints for these bytes.
  std::string md5sum(const std::string& bytes) {
    const std::string file = folder / "bytes";
    std::ofstream(file, std::ios::binary) << bytes;
    return runCommand({"md5sum", file}).output.substr(0, 32);
  }
  static QImage picture(const KTProcessPointer& process, int side) {
    const QtImage* image = qtImage(process->icon());
    EXPECT_NE(image, nullptr);
    return image == nullptr
               ? QImage()
               : image->pixmap(side, 1.0).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  }
  // The largest difference of two pictures in any part of any pixel; two decoders may round in two ways.
  static int difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size() || a.format() != b.format()) return 256;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
      for (int i = 0; i < a.width() * 4; ++i) {
        largest = std::max(largest, std::abs(int{a.constScanLine(y)[i]} - int{b.constScanLine(y)[i]}));
      }
    }
    return largest;
  }
  static std::string contentOf(const fs::path& file) {
    std::stringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
  }

  OffscreenApplication toolkit;
  QtImages images{Text(KT_SOURCE_DIR "/Resources")};
  CryptoDigests digests;
  fs::path bundle;
};

TEST_F(RealSample, AnswersWithWhatItsBundleSays) {
  if (!desktop) return;
  const KTProcessPointer sample = run({.name = "Muster", .version = "2.1b3"});
  EXPECT_EQ(sample->name(), Text("Muster"));
  EXPECT_EQ(sample->identifier(), Text("example.halvorn.Muster"));
  EXPECT_EQ(sample->signatureString(), Text("SMPL"));
  EXPECT_EQ(sample->signatureHexString(), Text("534D504C"));
  EXPECT_EQ(sample->path(), Text(bundle.string()));
  EXPECT_EQ(sample->bundle(), Text(bundle.string()));
  EXPECT_EQ(sample->version(), Text(versionOfBundle(bundle)));
  EXPECT_EQ(sample->majorVersionNumber(), 2);
  EXPECT_TRUE(sample->isAtLeastVersion("2.0.5"));
  EXPECT_EQ(sample->platform(), Text(KTPlatformCarbon)) << "it names no principal class";
  EXPECT_FALSE(sample->isBackgroundOnly());
  EXPECT_EQ(sample->description(), Text("Process \"Muster\" (SMPL) 2.1b3"));
}

TEST_F(RealSample, HasTheTimesThatPsTells) {
  if (!desktop) return;
  const KTProcessPointer sample = run({});
  const std::string pid = std::to_string(sample->unixPID());
  const auto ps = [&](const char* column) {
    return std::stod(runCommand({"ps", "-o", std::string(column) + "=", "-p", pid}).output);
  };
  giveItAMoment(children.back());  // `ps` takes a program that has just started for one of the future
  const double elapsed = ps("etimes");
  EXPECT_NEAR(live->clock.now().secondsSince1970 - sample->launchDate().secondsSince1970, elapsed, 1.5);
  // `ps` counts the kernel's work too, so the ticks of the program's own are taken from where it takes them.
  const OwnProcessorTimes times(folder / "times");
  if (times.missing()) GTEST_SKIP() << *times.missing();
  double told = 0, seconds = 0;
  EXPECT_TRUE(eventually([&] {
    const auto ticks = runCommand({"awk", "{ print $14 }", "/proc/" + pid + "/stat"});
    seconds = std::stod(ticks.output) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    told = sample->cpuTime();
    return std::abs(told - seconds) < 0.001;
  })) << told
      << " and not " << seconds;
  EXPECT_LE(sample->cpuTime(), ps("cputimes") + 1.0);
}

TEST_F(RealSample, HasTheHashOfItsIdentifier) {
  if (!desktop) return;
  EXPECT_EQ(run({})->hashString().bytes(), md5sum("id:example.halvorn.Sample"));
}

TEST_F(RealSample, WithoutAnIdentifierHasTheHashOfItsSignature) {
  if (!desktop) return;
  const std::string program =
      makeBundle(folder.path(), {.name = "Editor", .info = {{"CFBundleSignature", "EDIT"}}});
  const KTProcessPointer declared = process(start(program, {"--windows", "1"}));
  EXPECT_EQ(declared->hashString().bytes(), md5sum("sig:EDIT"));
  const auto plain = folder.path() / "bin/plain";
  placeZooProgram(plain);
  const KTProcessPointer derived = process(start(plain.string(), {"--windows", "1"}));
  EXPECT_EQ(derived->hashString().bytes(), md5sum(derived->hashStringSource().bytes()));
  EXPECT_NE(derived->hashString(), declared->hashString());
}

TEST_F(RealSample, HasThePictureInItsBundleAsItsIcon) {
  if (!desktop) return;
  const KTProcessPointer sample = run({});
  QImage drawn;
  ASSERT_TRUE(drawn.load(QString::fromStdString(bundle / "Contents/Resources/Sample.png")));
  drawn.convertTo(QImage::Format_ARGB32_Premultiplied);
  EXPECT_LE(difference(picture(sample, drawn.width()), drawn), 1);
  EXPECT_EQ(sample->icon(), sample->icon()) << "the same object";
  // It is kept, whatever becomes of the file.
  fs::remove(bundle / "Contents/Resources/Sample.png");
  EXPECT_LE(difference(picture(sample, drawn.width()), drawn), 1);
}

TEST_F(RealSample, HasEverySizeOfAnIconFile) {
  if (!desktop) return;
  const std::string program = makeBundle(
      folder.path(), {.name = "Icon", .info = {{"CFBundleIconFile", "Own"}, {"CFBundleSignature", "ICON"}}});
  const fs::path file = folder.path() / "Icon.app/Contents/Resources/Own.icns";
  fs::create_directories(file.parent_path());
  fs::copy_file(KT_SOURCE_DIR "/Resources/HalvornInstaller.icns", file);
  const KTProcessPointer process = this->process(start(program));
  const auto* image = dynamic_cast<const EncodedImage*>(process->icon().get());
  ASSERT_NE(image, nullptr);
  const std::string bytes = contentOf(file);
  EXPECT_GE(image->representations().size(), 3u);
  for (const auto& size : image->representations()) {
    EXPECT_NE(bytes.find(size.bytes.toStdString()), std::string::npos) << size.side;
  }
}

TEST_F(RealSample, WithoutAPictureOfItsOwnHasTheOneTheDesktopShows) {
  if (!desktop) return;
  const KTProcessPointer sample = run({.name = "Bare", .hasIcon = false});
  const ImagePointer shown = images.iconForFile(Text(bundle.string()));
  EXPECT_EQ(sample->icon() == nullptr, shown == nullptr);
}

TEST_F(RealSample, ThePlatformIsReadFromTheBundle) {
  if (!desktop) return;
  const auto platformOf = [&](const std::string& name, std::map<std::string, std::string> info) {
    return process(start(makeBundle(folder.path(), {.name = name, .info = std::move(info)})))->platform();
  };
  EXPECT_EQ(platformOf("A", {{"NSPrincipalClass", "NSApplication"}}), Text(KTPlatformCocoa));
  EXPECT_EQ(platformOf("B", {{"CFBundleIdentifier", "org.example.java.B"}}), Text(KTPlatformJava));
  EXPECT_EQ(platformOf("C", {{"CFBundleIdentifier", "org.example.Java.C"}}), Text(KTPlatformCarbon));
  EXPECT_EQ(platformOf("D", {{"NSPrincipalClass", "NSApplication"}, {"CFBundleIdentifier", "org.java"}}),
            Text(KTPlatformCocoa));
}

}  // namespace
}  // namespace halvorn
