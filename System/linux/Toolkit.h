// The toolkit without windows, for what is asked over its bus by a program that has no application.
#pragma once

#include <QCoreApplication>
#include <memory>

#include "System/linux/Ground.h"

namespace halvorn {

class Toolkit {
 public:
  explicit Toolkit(KTSystem& system) : path_(system.parts().of<Ground>().programPath.bytes()) {
    if (QCoreApplication::instance() == nullptr)
      core_ = std::make_unique<QCoreApplication>(count_, arguments_);
  }

 private:
  std::string path_;
  int count_ = 1;
  char* arguments_[2] = {path_.data(), nullptr};
  std::unique_ptr<QCoreApplication> core_;
};

}  // namespace halvorn
