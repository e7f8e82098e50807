// Says whether it is being debugged.
#include <iostream>

#include "Platform/session/linux/ProcDebugger.h"

int main() {
  std::cout << "debugging: " << (halvorn::ProcDebugger().isAttached() ? "yes" : "no") << std::endl;
}
