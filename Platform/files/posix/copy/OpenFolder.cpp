#include "Platform/files/posix/copy/OpenFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "Platform/files/posix/copy/NewFolder.h"

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
      (isWatched && !isNewFolder(folder->target(), mode)) ||
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
