// Quits the running product before its bundle is replaced.
//
// Which applications that means is the argument "quitCode", a list of signatures; without it nothing is ever
// quit. This program itself is never among them.
//
// Thread: the install worker's.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Core/Cancellation.h"
#include "Core/FourCharCode.h"
#include "Core/Text.h"
#include "Sources/ArgumentDictionary.h"

namespace halvorn {

class Clock;
class FourCharCodes;
class KTProcess;
class KTProcessClass;
class Log;

// Whether any of the codes, read as the system reads four-character codes, is the signature; false without codes (null), and for
// "????", which every program may have that declares none: no list names it, whatever it says.
// KEEP: what cannot be read as a code counts as 0 and so names a process without a signature. No process that
// runs has that signature.
[[nodiscard]] bool signatureIsInArray(FourCharCode signature, const std::vector<Text>* codes,
                                      const FourCharCodes& system);

class ProductQuitter {
 public:
  // Once `cancellation` is requested nothing is asked to quit any more.
  ProductQuitter(KTProcessClass& processes, const ArgumentDictionary& arguments,
                 const Cancellation& cancellation, Clock& clock, const Log& log);

  // The name of the first application still to be quit ("" when it has none any more); nullopt when all are
  // gone. Logs: "Still running '%@': %@".
  [[nodiscard]] OptionalText processToQuitStillRunning() const;
  // The applications that would be asked now, in the session's order; asks none of them.
  [[nodiscard]] std::vector<std::shared_ptr<KTProcess>> targets() const;
  // Quits one application after the other, up to eight seconds each, and does not look back: what refused
  // shows in processToQuitStillRunning(). Logs: "Quitting '%@': %@" for each.
  void quitProcesses() const;

 private:
  enum class Walk { Continue, Stop };
  void walkTargets(const std::function<Walk(KTProcess&)>& visit) const;

  KTProcessClass& processes_;
  const ArgumentDictionary& arguments_;
  const Cancellation& cancellation_;
  Clock& clock_;
  const Log& log_;
};

}  // namespace halvorn
