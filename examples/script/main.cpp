// Runs a script with a time limit and prints what it wrote.
#include <KTStuff/KTClasses/KTUtilities.h>
#include <KTStuff/KTSystem.h>

#include <iostream>

using namespace halvorn;

int main(int count, char** arguments) {
  KTSystem system({arguments, arguments + count});
  const OptionalText day = system.utilities().shellCommandResult("printf 'a command'");
  std::cout << day.value_or("no text").bytes() << "\n";
  const OptionalText missing = system.utilities().runShellScript("/nowhere/script.sh", std::nullopt, 2.0);
  std::cout << missing.value_or("no text").bytes() << "\n";
}
