#include "Platform/files/posix/copy/OpenFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <string_view>
#include <utility>

namespace halvorn {
namespace {

constexpr int openToList = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

FileDescriptor openOriginal(const CopyContext& context, int folder, const char* name) {
  const RightsOf rights(context.rules.readAs);
  if (!rights.holds()) return {};
  return FileDescriptor(retried([&] { return ::openat(folder, name, openToList); }));
}

bool isSame(const FileDescriptor& opened, const struct stat& before) {
  struct stat now {};
  return opened && ::fstat(opened.get(), &now) == 0 && now.st_dev == before.st_dev &&
         now.st_ino == before.st_ino;
}

// Whether it is what this process has just made. Where others may write, they may have put something else
// there by now.
bool isNew(int folder, const struct stat& facts) {
  if (facts.st_uid != ::geteuid()) return false;
  FileDescriptor again(retried([&] { return ::openat(folder, ".", openToList); }));
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(again ? ::fdopendir(again.get()) : nullptr, ::closedir);
  if (stream == nullptr) return false;
  (void)again.release();
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return false;
  }
  return true;
}

}  // namespace

OpenFolder::OpenFolder(CopyContext& context, FileDescriptor source, FileDescriptor target)
    : context_(context), source_(std::move(source)), target_(std::move(target)) {}

std::shared_ptr<OpenFolder> OpenFolder::make(CopyContext& context, int sourceFolder, const char* name,
                                             int targetFolder, const char* targetName,
                                             std::shared_ptr<const FolderPath> path, MayInherit mayInherit) {
  FileDescriptor source = openOriginal(context, sourceFolder, name);
  struct stat facts {};
  if (!source || ::fstat(source.get(), &facts) != 0) {
    context.fail();
    return nullptr;
  }
  const mode_t mode = S_IRWXU | (context.giver.modeToStartWith(facts) & (S_IRWXG | S_IRWXO));
  if (::mkdirat(targetFolder, targetName, mode) != 0) {
    context.fail();
    return nullptr;
  }
  FileDescriptor target(retried([&] { return ::openat(targetFolder, targetName, openToList); }));
  std::shared_ptr<OpenFolder> folder(new OpenFolder(context, std::move(source), std::move(target)));
  folder->facts_ = facts;
  folder->path_ = std::make_shared<FolderPath>(FolderPath{.above = std::move(path), .name = targetName});
  // Further down nobody else can write yet.
  const bool isWatched = mayInherit == MayInherit::Yes && context.rules.ownership == Ownership::ThisProcess;
  if (!folder->target_ || ::fstat(folder->target(), &folder->made_) != 0 ||
      (isWatched && !isNew(folder->target(), folder->made_)) ||
      !context.giver.startFolder(folder->source(), folder->target(), facts, folder->made_, folder->later_,
                                 mayInherit)) {
    context.fail();
    return nullptr;
  }
  return folder;
}

OpenFolder::~OpenFolder() {
  if (context_.hasFailed()) return;
  if (!context_.giver.finishFolder(target_.get(), facts_, made_, later_)) context_.fail();
}

void OpenFolder::park() {
  source_.reset();
  target_.reset();
}

bool OpenFolder::unpark(const OpenFolder& child) {
  source_ = openOriginal(context_, child.source(), "..");
  target_ = FileDescriptor(retried([&] { return ::openat(child.target(), "..", openToList); }));
  if (isSame(source_, facts_) && isSame(target_, made_)) return true;
  context_.fail();
  return false;
}

}  // namespace halvorn
