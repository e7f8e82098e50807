// What the cases of the contract are asked of on macOS.
#pragma once

#include <gtest/gtest.h>

#include "Platform/text/mac/MacDigests.h"
#include "Platform/text/mac/MacFourCharCodes.h"
#include "Platform/text/mac/MacHtmlText.h"
#include "Platform/text/mac/MacRegex.h"
#include "Platform/text/mac/MacTextCodecs.h"
#include "Platform/text/mac/MacUnicode.h"

namespace halvorn {

using Unicodes = testing::Types<MacUnicode>;
using Codecs = testing::Types<MacTextCodecs>;
using Regexes = testing::Types<MacRegex>;
using Htmls = testing::Types<MacHtmlText>;
using AllCodes = testing::Types<MacFourCharCodes>;
using AllDigests = testing::Types<MacDigests>;

}  // namespace halvorn
