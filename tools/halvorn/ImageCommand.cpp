// halvorn image: a medium with the product and its installer, made the same whoever makes it and whenever.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Core/Paths.h"
#include "KTStuff/KTSystem.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/BundleIcon.h"
#include "Platform/bundles/linux/launching/IconPictures.h"
#include "Platform/files/FileManager.h"
#include "Platform/running/linux/ThisProgram.h"
#include "tools/halvorn/Check.h"
#include "tools/halvorn/Launchers.h"
#include "tools/halvorn/Plan.h"
#include "tools/halvorn/Program.h"
#include "tools/halvorn/SingleFile.h"
#include "tools/halvorn/TreeAudit.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestIcon = 16UL * 1024 * 1024;
enum class Kind { Squashfs, Iso, SingleFile };

// A folder that is gone with the object.
class Scratch {
 public:
  Scratch() {
    std::string pattern = (fs::temp_directory_path() / "halvorn-image-XXXXXX").string();
    if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
  }
  ~Scratch() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// What ends the command: a status and a sentence.
struct Stop {
  Ending ending;
  std::string sentence;
};
using MayStop = std::optional<Stop>;

struct Order {
  std::string product;    // bundle
  std::string installer;  // bundle
  std::string image;
  Kind kind = Kind::Squashfs;
  std::string launcher = {};  // to open on the medium
  std::string starter = {};   // of a single file
  OptionalText readMe, documentation, signer;
};

std::int64_t newestTimeIn(const std::string& top) {
  std::int64_t newest = 0;
  const auto look = [&](const fs::path& path) {
    struct stat facts {};
    if (::lstat(path.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode))
      newest = std::max<std::int64_t>(newest, facts.st_mtim.tv_sec);
  };
  for (const auto& entry : fs::recursive_directory_iterator(top)) look(entry.path());
  return newest;
}

// Everybody may read; who may run or search is the same for everybody; nobody but the owner may write.
void setMode(const fs::path& path) {
  struct stat facts {};
  if (::lstat(path.c_str(), &facts) != 0 || S_ISLNK(facts.st_mode)) return;
  const bool runs = S_ISDIR(facts.st_mode) || (facts.st_mode & 0111U) != 0;
  static_cast<void>(::chmod(path.c_str(), runs ? 0755 : 0644));
}

void setTime(const fs::path& path, std::int64_t seconds) {
  const timespec times[2] = {{.tv_sec = seconds, .tv_nsec = 0}, {.tv_sec = seconds, .tv_nsec = 0}};
  static_cast<void>(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW));
}

std::vector<fs::path> itemsIn(const std::string& top) {
  std::vector<fs::path> items;
  for (const auto& entry : fs::recursive_directory_iterator(top)) items.push_back(entry.path());
  return items;
}

class Making {
 public:
  Making(const Order& order, InstallerSteps& steps, LauncherFacts facts)
      : order_(order), steps_(steps), facts_(std::move(facts)) {}

  MayStop made() {
    if (scratch_.path().empty()) return Stop{Ending::CannotCreate, "no temporary folder can be made"};
    if (auto stop = layOut()) return stop;
    settle();
    if (auto stop = makeImage()) return stop;
    if (auto stop = writeSums()) return stop;
    if (auto stop = sign()) return stop;
    return prove();
  }
  [[nodiscard]] const std::string& sum() const { return sum_; }

 private:
  [[nodiscard]] std::string stage(const std::string& below = {}) const {
    return scratch_.path() + "/stage" + (below.empty() ? "" : "/" + below);
  }
  [[nodiscard]] MayStop copy(const std::string& from, const std::string& below) const {
    const auto failure = steps_.system().files().copyItem(Text(from), Text(stage(below)));
    if (!failure) return std::nullopt;
    return Stop{Ending::NotCopied, format("%@: %@", failure->reason, failure->path).bytes()};
  }
  [[nodiscard]] MayStop write(const std::string& below, const std::string& text, bool runs = false) const {
    std::ofstream file(stage(below), std::ios::binary);
    file << text;
    file.close();
    if (!file) return Stop{Ending::CannotCreate, "cannot write " + stage(below)};
    if (runs) fs::permissions(stage(below), static_cast<fs::perms>(0755));
    return std::nullopt;
  }

  MayStop layOut() {
    fs::create_directories(stage(kMediumFolder));
    if (auto stop = copy(order_.product, productPath(facts_))) return stop;
    fs::create_directories(fs::path(stage(installerPath(facts_))).parent_path());
    if (auto stop = copy(order_.installer, installerPath(facts_))) return stop;
    if (order_.readMe) {
      if (auto stop = copy(order_.readMe->bytes(), facts_.readMe)) return stop;
    }
    if (order_.documentation) {
      if (auto stop = copy(order_.documentation->bytes(), facts_.documentation)) return stop;
    }
    if (auto stop = copy(order_.launcher, launcherName(facts_))) return stop;
    if (auto stop = write(kLauncherWordsPath, launcherWordsFile(launcherWords(facts_)))) return stop;
    if (auto stop = write(entryName(facts_), launcherEntry(facts_), true)) return stop;
    if (auto stop = write(markPath(facts_), entryScript(facts_))) return stop;
    return writeIcon();
  }

  // By which the desktops that know such a file show the medium.
  MayStop writeIcon() {
    const OptionalText icon = bundleIconFile(steps_.bundles(), Text(order_.product));
    const auto bytes = icon ? steps_.system().files().readFile(*icon, kLargestIcon) : std::nullopt;
    auto pictures = picturesInIcon(bytes.value_or(std::string()));
    std::string volume = "[Volume Info]\nName=" + facts_.product + "\n";
    if (!pictures.empty()) {
      const auto largest = std::max_element(pictures.begin(), pictures.end(),
                                            [](const auto& a, const auto& b) { return a.size < b.size; });
      const std::string path = std::string(kMediumFolder) + "/icon.png";
      if (auto stop = write(path, largest->png)) return stop;
      volume += "IconFile=" + path + "\n";
    }
    return write(".xdg-volume-info", volume);
  }

  // The product's own times stay, those of all else are its newest.
  void settle() {
    time_ = newestTimeIn(order_.product);
    const std::string product = stage(productPath(facts_)) + "/";
    const std::string installer = stage(installerPath(facts_));
    for (const fs::path& path : itemsIn(stage())) {
      setMode(path);
      const bool isProducts = path.string().starts_with(product) && !path.string().starts_with(installer);
      if (!isProducts || fs::is_directory(fs::symlink_status(path))) setTime(path, time_);
    }
    setMode(stage());
    setTime(stage(), time_);
  }

  [[nodiscard]] std::vector<std::string> imageWords() const {
    if (order_.kind == Kind::Squashfs)
      return {"mksquashfs", stage(), order_.image, "-noappend", "-no-progress",
              "-quiet",     "-comp", "xz",         "-all-root", "-no-xattrs"};
    // With the modes of the stage: those that -r chooses let nobody write, and what is copied from there could neither be
    // moved to the Trash nor replaced.
    return {"xorriso", "-as",        "mkisofs", "-quiet", "-R", "-uid",
            "0",       "-gid",       "0",       "-D",     "-V", facts_.product.substr(0, 32),
            "-o",      order_.image, stage()};
  }

  MayStop makeImage() {
    if (order_.kind == Kind::SingleFile) return makeSingleFile();
    const auto words = imageWords();
    std::error_code problem;
    fs::remove(order_.image, problem);
    const ProgramEnd end = runProgram(words, {"SOURCE_DATE_EPOCH=" + std::to_string(time_)});
    if (end.status == 0) return std::nullopt;
    return Stop{Ending::CannotCreate, words.front() + ": " + end.output};
  }

  [[nodiscard]] MayStop makeSingleFile() const {
    const std::string problem = madeSingleFile(
        {.starter = order_.starter, .folder = stage(), .scratch = scratch_.path(), .output = order_.image});
    return problem.empty() ? std::nullopt : MayStop(Stop{Ending::CannotCreate, problem});
  }

  MayStop writeSums() {
    const fs::path image(order_.image);
    const ProgramEnd end = runProgram({"sha256sum", "--", order_.image});
    if (end.status != 0 || end.output.size() < 64)
      return Stop{Ending::CannotCreate, "sha256sum: " + end.output};
    // A name that holds strange characters is announced by a backslash.
    sum_ = end.output.substr(end.output.front() == '\\' ? 1 : 0, 64);
    std::ofstream file(order_.image + ".sha256");
    file << sum_ << "  " << image.filename().string() << "\n";
    file.close();
    if (!file) return Stop{Ending::CannotCreate, "cannot write " + order_.image + ".sha256"};
    return std::nullopt;
  }

  MayStop sign() {
    if (!order_.signer) return std::nullopt;
    const ProgramEnd end =
        runProgram({"gpg", "--batch", "--yes", "--armor", "--local-user", order_.signer->bytes(), "--output",
                    order_.image + ".asc", "--detach-sign", "--", order_.image});
    if (end.status == 0) return std::nullopt;
    return Stop{Ending::CannotCreate, "gpg: " + end.output};
  }

  [[nodiscard]] ProgramEnd unpackedTo(const std::string& folder) const {
    switch (order_.kind) {
      case Kind::Squashfs:
        return runProgram({"unsquashfs", "-quiet", "-no-progress", "-no-xattrs", "-d", folder, order_.image});
      case Kind::Iso:
        return runProgram({"xorriso", "-osirrox", "on", "-indev", order_.image, "-extract", "/", folder});
      case Kind::SingleFile:
        break;
    }
    return runProgram({order_.image, "--unpack", folder});
  }

  // As a person does: a single file itself, else what lies on the medium to be opened.
  [[nodiscard]] ProgramEnd startedFrom(const std::string& folder) const {
    if (order_.kind != Kind::SingleFile)
      return runProgram({folder + "/" + launcherName(facts_), "--version"});
    return runProgram({order_.image, "--version"}, {"XDG_CACHE_HOME=" + scratch_.path()});
  }

  // Unpacks the image, compares the product, starts the installer from it, and asks that what it would do.
  MayStop prove() {
    const std::string folder = scratch_.path() + "/unpacked";
    const ProgramEnd unpacked = unpackedTo(folder);
    const auto unproved = [](const std::string& why) {
      return Stop{Ending::No, "the image does not hold: " + why};
    };
    if (unpacked.status != 0) return unproved(unpacked.output);
    const std::string product = folder + "/" + productPath(facts_);
    const TreeAudit audit = auditOf(stage(productPath(facts_)), product);
    for (const TreeDifference& each : audit.differences) {
      if (each.kind != "owner" && each.kind != "mode" && each.kind != "time" && each.kind != "attribute")
        return unproved(each.path + ": " + each.kind);
    }
    const std::string installer = folder + "/" + installerPath(facts_);
    const ProgramEnd started = startedFrom(folder);
    if (started.status != 0) return unproved("its installer does not start: " + started.output);
    InstallerSteps steps({.installer = Text(installer), .arguments = {"-sourcePath", Text(product)}});
    steps.begin();
    const OptionalText problem = steps.setupError();
    return problem ? MayStop(unproved(problem->bytes())) : std::nullopt;
  }

  const Order& order_;
  InstallerSteps& steps_;
  const LauncherFacts facts_;
  const Scratch scratch_;
  std::int64_t time_ = 0;
  std::string sum_;
};

std::string absolutePath(const Text& word) {
  std::error_code problem;
  const fs::path path = fs::absolute(word.bytes(), problem).lexically_normal();
  return path.has_filename() ? path.string() : path.parent_path().string();
}

struct KindFacts {
  const char* ending;  // of the image's name
  Kind kind;
  const char* program;  // that makes it, and its package
  const char* package;
};
constexpr KindFacts kKinds[] = {{".squashfs", Kind::Squashfs, "mksquashfs", "squashfs-tools"},
                                {".iso", Kind::Iso, "xorriso", "xorriso"},
                                {".run", Kind::SingleFile, "zstd", "zstd"}};

// Beside halvorn, beside the installer's bundle, or where packages have it.
MayStop obstacleToFinding(const char* program, const Order& order, std::string& path) {
  const Text folder = Paths::deletingLastComponent(pathOfThisProgram());
  for (const Text& place : {folder, Paths::deletingLastComponent(Text(order.installer)),
                            Paths::appending(Paths::deletingLastComponent(folder), "lib/halvorn")}) {
    path = Paths::appending(place, program).bytes();
    if (fs::is_regular_file(path)) return std::nullopt;
  }
  return Stop{Ending::NoInput,
              "no " + std::string(program) + " lies beside halvorn or the installer's bundle"};
}

MayStop obstacleToKind(Order& order) {
  const auto* const facts =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&order](const KindFacts& each) { return order.image.ends_with(each.ending); });
  if (facts == std::end(kKinds))
    return Stop{Ending::Misused, "the image's name ends in .squashfs, .iso or .run"};
  order.kind = facts->kind;
  if (!isInPath(facts->program))
    return Stop{Ending::Unavailable,
                std::string(facts->program) + " is not installed: sudo apt install " + facts->package};
  if (auto stop = obstacleToFinding("HalvornLauncher", order, order.launcher)) return stop;
  if (order.kind != Kind::SingleFile) return std::nullopt;
  return obstacleToFinding("HalvornStarter", order, order.starter);
}

MayStop obstacleTo(const Call& call, Order& order) {
  if (auto stop = obstacleToKind(order)) return stop;
  if (order.signer && !isInPath("gpg"))
    return Stop{Ending::Unavailable, "gpg is not installed: sudo apt install gnupg"};
  if (call.words.has("--inside") && call.words.has("--beside"))
    return Stop{Ending::Misused, "--inside and --beside exclude each other"};
  for (const OptionalText& file : {order.readMe, order.documentation}) {
    if (file && !fs::exists(file->bytes())) return Stop{Ending::NoInput, "there is no file " + shown(*file)};
  }
  return std::nullopt;
}

OptionalText absoluteValue(const Call& call, const char* option) {
  const OptionalText value = call.words.value(option);
  return value ? OptionalText(Text(absolutePath(*value))) : std::nullopt;
}

Ending stopped(const Call& call, const Stop& stop) {
  call.complain(stop.sentence);
  return stop.ending;
}

}  // namespace

Ending image(const Call& call) {
  if (call.words.plain.size() != 1 || !call.words.has("--output")) return Ending::Misused;
  const OptionalText installer = installerFor(call);
  Order order{.product = absolutePath(call.words.plain.front()),
              .installer = installer.value_or(Text()).bytes(),
              .image = absolutePath(*call.words.value("--output")),
              .readMe = absoluteValue(call, "--read-me"),
              .documentation = absoluteValue(call, "--documentation"),
              .signer = call.words.value("--sign")};
  if (!installer)
    return stopped(call, {Ending::NoInput, "no installer's bundle was found; name it with --installer"});
  if (!fs::is_directory(order.product))
    return stopped(call, {Ending::NoInput, "there is no folder " + shown(Text(order.product))});
  if (const auto stop = obstacleTo(call, order)) return stopped(call, *stop);

  InstallerSteps steps({.installer = *installer, .arguments = {"-sourcePath", Text(order.product)}});
  steps.begin();
  PropertyDictionary facts = checkOf(steps, Text(order.product));
  if (!*facts.at("ok").boolean()) {
    call.complain("the product has errors: halvorn check " + shown(Text(order.product)));
    return Ending::No;
  }
  if (!fs::exists(order.installer + "/Contents/Frameworks"))
    call.complain(
        "note: this installer brings no toolkit: it starts only where that of this system is installed; name "
        "one "
        "that does with --installer");
  const fs::path bundle(order.product);
  const OptionalText identifier = textForKey(facts, "identifier");
  const LauncherFacts launcher{
      .product = bundle.stem().string(),
      .identifier = identifier ? identifier->bytes() : bundle.stem().string(),
      .isInside = call.words.has("--inside"),
      .readMe = order.readMe ? fs::path(order.readMe->bytes()).filename().string() : "",
      .documentation = order.documentation ? fs::path(order.documentation->bytes()).filename().string() : ""};
  Making making(order, steps, launcher);
  if (const auto stop = making.made()) return stopped(call, *stop);
  if (!call.isJson()) {
    call.say(order.image + "\n" + making.sum() + "\nOn it: " + shown(Text(launcherName(launcher))));
    return Ending::Done;
  }
  PropertyDictionary answer = {
      {"image", Text(order.image)},       {"bytes", static_cast<std::int64_t>(fs::file_size(order.image))},
      {"sha256", Text(making.sum())},     {"launcher", Text(launcherName(launcher))},
      {"findings", facts.at("findings")}, {"status", 0}};
  if (order.signer) put(answer, "signature", Text(order.image + ".asc"));
  call.sayJson(answer);
  return Ending::Done;
}

}  // namespace halvorn
