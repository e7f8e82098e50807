// Lists the programs of this session and compares two versions.
#include <KTStuff/KTClasses/KTProcessClass.h>
#include <KTStuff/KTClasses/KTUtilitiesVersions.h>
#include <KTStuff/KTSystem.h>

#include <iostream>

using namespace halvorn;

int main(int count, char** arguments) {
  KTSystem system({arguments, arguments + count});
  for (const KTProcessPointer& process : system.processes().allProcesses())
    std::cout << process->name().value_or("?").bytes() << " " << process->version().bytes() << "\n";
  const bool isOlder = system.versions().compareVersion("2.1b3", "2.1") == Ordering::Ascending;
  std::cout << "2.1b3 is " << (isOlder ? "older" : "not older") << " than 2.1\n";
}
