// Texts: what needs a library of its own stands in a file of its own, so that a program links what it asks for.
#include "Platform/text/linux/IcuLocalizedDates.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "Platform/text/linux/LoadedDigests.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "System/linux/Ground.h"

namespace halvorn {
namespace {

struct Tables {
  explicit Tables(KTSystem& system) : digests(system.parts().of<Ground>().modulePath("HalvornDigests.so")) {}

  const IcuUnicode unicode;
  const IcuLocalizedDates dates;
  const LoadedDigests digests;
  const MacRomanCodes codes;
};

}  // namespace

const Unicode& KTSystem::unicode() { return parts_->of<Tables>().unicode; }
const LocalizedDates& KTSystem::dates() { return parts_->of<Tables>().dates; }
const FourCharCodes& KTSystem::fourCharCodes() { return parts_->of<Tables>().codes; }
const Digests& KTSystem::digests() { return parts_->of<Tables>().digests; }

}  // namespace halvorn
