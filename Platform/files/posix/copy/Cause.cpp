#include "Platform/files/posix/copy/Cause.h"

#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {

FileFailure Cause::at(const std::string& path) const {
  return {.operation = operation_,
          .path = path,
          .reason = kind_ == Kind::Ours ? Text(reason_) : Text(SystemCalls::wordsFor(error_))};
}

}  // namespace halvorn
