#include "Platform/files/posix/copy/OpenFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "Platform/files/posix/copy/NewFolder.h"

namespace halvorn {
namespace {

constexpr int kOpenToList = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

using Operation = Cause::Operation;

OrCause<FileDescriptor> openOriginal(const CopyContext& context, int folder, const char* name) {
  const RightsOf rights(context.rules.readAs);
  if (!rights.holds()) return causeOfMissingRights();
  FileDescriptor opened(retried([&] { return ::openat(folder, name, kOpenToList); }));
  if (!opened) return Cause::ofSystem(Operation::Open, Cause::Side::Original);
  return opened;
}

// None when it is the folder that was looked at before.
Cause causeUnlessSame(const FileDescriptor& opened, const struct stat& before, Cause::Side side) {
  struct stat now {};
  if (!opened || ::fstat(opened.get(), &now) != 0) return Cause::ofSystem(Operation::Open, side);
  if (now.st_dev == before.st_dev && now.st_ino == before.st_ino) return {};
  return Cause::ofOurs(Operation::Open, "it was moved or replaced while it was copied", side);
}

}  // namespace

OpenFolder::OpenFolder(CopyContext& context, FileDescriptor source, FileDescriptor target)
    : context_(context), source_(std::move(source)), target_(std::move(target)) {}

std::shared_ptr<OpenFolder> OpenFolder::make(CopyContext& context, int sourceFolder, const char* name,
                                             int targetFolder, const char* targetName,
                                             std::shared_ptr<const FolderPath> path, MayInherit mayInherit) {
  const auto failed = [&context, name, above = path.get()](const Cause& cause) {
    context.fail(cause, above, name);
    return nullptr;
  };
  auto source = openOriginal(context, sourceFolder, name);
  struct stat facts {};
  if (!source) return failed(source.cause());
  if (::fstat(source->get(), &facts) != 0)
    return failed(Cause::ofSystem(Operation::Look, Cause::Side::Original));
  const mode_t mode = S_IRWXU | (context.giver.modeToStartWith(facts) & (S_IRWXG | S_IRWXO));
  if (::mkdirat(targetFolder, targetName, mode) != 0) return failed(Cause::ofSystem(Operation::Make));
  FileDescriptor target(retried([&] { return ::openat(targetFolder, targetName, kOpenToList); }));
  if (!target) return failed(Cause::ofSystem(Operation::Open));
  std::shared_ptr<OpenFolder> folder(new OpenFolder(context, std::move(*source), std::move(target)));
  folder->facts_ = facts;
  folder->path_ = std::make_shared<FolderPath>(FolderPath{.above = std::move(path), .name = targetName});
  // Further down nobody else can write yet.
  const bool isWatched = mayInherit == MayInherit::Yes && context.rules.ownership == Ownership::ThisProcess;
  if (::fstat(folder->target(), &folder->made_) != 0) return failed(Cause::ofSystem(Operation::Look));
  if (isWatched && !isNewFolder(folder->target(), mode)) return failed(causeOfExchange());
  const Cause cause = context.giver.startFolder(folder->source(), folder->target(), facts, folder->made_,
                                                folder->later_, mayInherit);
  if (cause) return failed(cause);
  return folder;
}

OpenFolder::~OpenFolder() {
  if (context_.hasFailed()) return;
  if (const Cause cause = context_.giver.finishFolder(target_.get(), facts_, made_, later_)) fail(cause);
}

void OpenFolder::fail(const Cause& cause) const noexcept {
  context_.fail(cause, path_->above.get(), path_->name.c_str());
}

void OpenFolder::park() {
  source_.reset();
  target_.reset();
}

void OpenFolder::unpark(const OpenFolder& child) {
  auto source = openOriginal(context_, child.source(), "..");
  if (!source) return fail(source.cause());
  source_ = std::move(*source);
  if (const Cause cause = causeUnlessSame(source_, facts_, Cause::Side::Original)) return fail(cause);
  target_ = FileDescriptor(retried([&] { return ::openat(child.target(), "..", kOpenToList); }));
  if (const Cause cause = causeUnlessSame(target_, made_, Cause::Side::Copy)) return fail(cause);
}

}  // namespace halvorn
