// What the module of digests hands out.
#pragma once

namespace halvorn {

class Digests;

inline constexpr char kDigestModuleFunction[] = "halvornMakeDigests";
using MakeDigests = Digests*();  // the caller owns the answer

}  // namespace halvorn
