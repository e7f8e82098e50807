// What the cases of the contract are asked of on Linux: the fakes and the libraries.
#pragma once

#include <gtest/gtest.h>

#include "Platform/text/linux/CryptoDigests.h"
#include "Platform/text/linux/IcuRegex.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "Platform/text/posix/MacRomanCodes.h"
#include "Platform/text/posix/XmlHtmlText.h"
#include "tests/fakes/FakeDigests.h"
#include "tests/fakes/FakeHtmlText.h"
#include "tests/fakes/FakeRegex.h"
#include "tests/fakes/FakeTextCodecs.h"
#include "tests/fakes/FakeUnicode.h"

namespace halvorn {

using Unicodes = testing::Types<FakeUnicode, IcuUnicode>;
using Codecs = testing::Types<FakeTextCodecs, IcuTextCodecs>;
using Regexes = testing::Types<FakeRegex, IcuRegex>;
using Htmls = testing::Types<FakeHtmlText, XmlHtmlText>;
using AllCodes = testing::Types<MacRomanCodes>;
using AllDigests = testing::Types<FakeDigests, CryptoDigests>;

}  // namespace halvorn
