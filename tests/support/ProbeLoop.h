// A program of the toolkit that tests speak to: it says "ready", then does what each line of its standard
// input says, one after the other on the main thread, and ends with its input.
#pragma once

#include <functional>
#include <iostream>
#include <semaphore>
#include <string>
#include <thread>

#include "Platform/linux/ui/QtApplication.h"

namespace halvorn {

// Answers the program's exit status. The caller must then end the program by std::quick_exit: a thread may
// still wait for input.
inline int runProbe(QtApplication& application, const std::function<void(const std::string& line)>& obey) {
  std::binary_semaphore obeyed(0);  // a command may turn the event loop; the next one waits until it is done
  std::thread reader([&] {
    for (std::string line; std::getline(std::cin, line); obeyed.acquire()) {
      application.perform([&obey, &obeyed, line] {
        obey(line);
        obeyed.release();
      });
    }
    application.perform([&application] { application.terminate(); });
  });
  std::cout << "ready" << std::endl;
  const int status = application.run();
  reader.detach();  // it waits for input that may never come
  return status;
}

}  // namespace halvorn
