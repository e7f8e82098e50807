// Asks the program with a signature to quit, and waits for it up to twice four seconds.
#include <KTStuff/KTClasses/KTProcessClass.h>
#include <KTStuff/KTSystem.h>

#include <iostream>

using namespace halvorn;

int main(int count, char** arguments) {
  KTSystem system({arguments, arguments + count});
  const KTProcessPointer editor = system.processes().processWithSignature(fourCharCode("EDIT"));
  if (!editor) {
    std::cout << "no such program runs\n";
    return 0;
  }
  std::cout << (editor->quitRunningApplicationWithTimeout(4.0F) ? "it has quit\n" : "it still runs\n");
}
