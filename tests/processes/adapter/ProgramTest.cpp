#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/processes/linux/proc/Program.h"

namespace halvorn {
namespace {

TEST(Interpreters, AreReadAsTheKernelAndEnvReadThem) {
  const struct {
    const char* start;
    const char* program;
    std::vector<std::string> arguments;
    bool isSearched;
  } rows[] = {{"#!/bin/sh\necho", "/bin/sh", {}, false},
              {"#! /bin/sh -e -u\n", "/bin/sh", {"-e -u"}, false},
              {"#!/usr/bin/env python3\n", "python3", {}, true},
              {"#!/usr/bin/env -S python3 -u -E\n", "python3", {"-u", "-E"}, true},
              {"#!/bin/sh", "/bin/sh", {}, false}};
  for (const auto& row : rows) {
    const auto interpreter = parseInterpreter(row.start);
    ASSERT_TRUE(interpreter) << row.start;
    EXPECT_EQ(interpreter->program, row.program);
    EXPECT_EQ(interpreter->arguments, row.arguments);
    EXPECT_EQ(interpreter->isSearched, row.isSearched);
  }
  for (const char* start : {"", "#", "#!", "#!\n/bin/sh", "#!/usr/bin/env\n", "\177ELF", "echo"}) {
    EXPECT_FALSE(parseInterpreter(start)) << start;
  }
}

}  // namespace
}  // namespace halvorn
