#include "Platform/files/posix/copy/Cause.h"

#include "Platform/running/posix/ProcessCalls.h"

namespace halvorn {

FileFailure Cause::at(const std::string& path) const {
  return {.operation = operation_,
          .path = path,
          .reason = kind_ == Kind::Ours ? Text(reason_) : Text(ProcessCalls::wordsFor(error_))};
}

}  // namespace halvorn
