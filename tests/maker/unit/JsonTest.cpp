#include "tools/Json.h"

#include <gtest/gtest.h>

#include <limits>

namespace halvorn {
namespace {

TEST(Json, ValuesOfEveryKindAreWritten) {
  const PropertyDictionary value = {{"text", "a\"b\\c\n"},
                                    {"yes", true},
                                    {"number", std::int64_t{-7}},
                                    {"real", 2.5},
                                    {"list", PropertyArray{1, "x", PropertyArray{}}},
                                    {"none", PropertyDictionary{}}};
  EXPECT_EQ(json(PropertyValue(value)),
            "{\"list\": [1, \"x\", []], \"none\": {}, \"number\": -7, \"real\": 2.5, \"text\": "
            "\"a\\\"b\\\\c\\u000a\", \"yes\": true}");
}

TEST(Json, WhatItCannotSayIsReplaced) {
  EXPECT_EQ(json(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(json(Text("a\xE4z")), "\"a\\ufffdz\"");
  EXPECT_EQ(json(Text("\xF0\x9F\x98\x80")), "\"\xF0\x9F\x98\x80\"");
}

}  // namespace
}  // namespace halvorn
