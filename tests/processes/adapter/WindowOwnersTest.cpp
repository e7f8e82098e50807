#include <gtest/gtest.h>

#include <optional>

#include "Platform/processes/linux/x11/WindowOwners.h"

namespace halvorn {
namespace {

TEST(WindowOwnership, NeedsWitnessesThatAgree) {
  const struct {
    OwnerEvidence evidence;
    std::optional<pid_t> owner;
    const char* why;
  } rows[] = {
      {{"here", 7, 7, {7}}, 7, "all agree"},
      {{"here.example.com", 7, 7, {7}}, 7, "the same machine by its full name"},
      {{"there", 7, 7, {7}}, std::nullopt, "another machine"},
      {{"here", 2, 4711, {4711, 2}}, 4711, "a container's own number for the connected process"},
      {{"here", 3, 4711, {4711, 2}}, std::nullopt, "a claim that fits nobody connected"},
      {{std::nullopt, 7, 7, {7}}, 7, "two witnesses without the machine"},
      {{"here", std::nullopt, 7, {7}}, 7, "the server's word"},
      {{"here", 7, std::nullopt, {}}, 7, "the program's word, where the server tells nothing"},
      {{std::nullopt, 7, std::nullopt, {}}, std::nullopt, "one witness"},
      {{std::nullopt, std::nullopt, 7, {7}},
       std::nullopt,
       "a forwarded program connects through another one"},
      {{"here", 0, 7, {7}}, std::nullopt, "a claim of nonsense"},
      {{}, std::nullopt, "nothing"},
  };
  for (const auto& row : rows) EXPECT_EQ(ownerFrom(row.evidence, "here"), row.owner) << row.why;
}

}  // namespace
}  // namespace halvorn
