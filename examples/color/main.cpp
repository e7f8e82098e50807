// A color for light and dark.
#include <KTStuff/KTClasses/KTDynamicColorClass.h>
#include <KTStuff/KTClasses/PlainColor.h>
#include <KTStuff/KTSystem.h>

#include <iostream>

using namespace halvorn;

int main(int count, char** arguments) {
  KTSystem system({arguments, arguments + count});
  const auto paper = system.colors().lightColor(PlainColor::sRGB(1, 1, 0.9), PlainColor::sRGB(0.1, 0.1, 0.1));
  std::cout << "red of the paper: " << paper->redComponent() << "\n";
}
