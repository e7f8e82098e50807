// The main thread's event loop, as adapters hang their own sources of events on it.
//
// Thread: main, for making and destroying sources too; the call-backs run there.
#pragma once

#include <functional>
#include <memory>

namespace halvorn {

class RunLoop {
 public:
  // Calls back for as long as it exists. May be destroyed in its own call-back.
  class Source {
   public:
    virtual ~Source() = default;
  };

  virtual ~RunLoop() = default;
  // Calls back again and again while something can be read from the descriptor, or while its
  // other end is gone. The caller keeps the descriptor open for as long as the source exists.
  // Costs nothing while nothing happens.
  [[nodiscard]] virtual std::unique_ptr<Source> whenReadable(int descriptor,
                                                             std::function<void()> callback) = 0;
  // Calls back every so many seconds, first after that time.
  [[nodiscard]] virtual std::unique_ptr<Source> every(double seconds, std::function<void()> callback) = 0;
};

}  // namespace halvorn
