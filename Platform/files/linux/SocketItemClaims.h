// Claims that are names of sockets: the kernel gives a name to one program at a time, and takes it back when that ends.
//
// Thread: main.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "Platform/files/ItemClaims.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

class SocketItemClaims : public ItemClaims {
 public:
  // What the desktop gave this program so that it may come to the front; whoever has the claim gets it.
  struct Activation {
    std::string token = {};
    std::function<void(const std::string& token)> takeOver =
        {};  // called before `wanted` with what another one sent
  };
  // The loop must outlive it.
  SocketItemClaims(RunLoop& loop, Activation activation);

  Claim claim(const Text& path, std::function<void()> wanted) override;

 private:
  struct Claimed {
    FileDescriptor socket;
    std::unique_ptr<RunLoop::Source> calls;
  };
  void keep(FileDescriptor socket, std::function<void()> wanted);
  void hear(int socket, const std::function<void()>& wanted);

  RunLoop& loop_;
  Activation activation_;
  std::list<Claimed> claimed_;
};

}  // namespace halvorn
