// The same cases against the claims that a test writes down and against those that the kernel keeps.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <future>
#include <memory>
#include <string>

#include "Platform/files/linux/SocketItemClaims.h"
#include "Platform/running/posix/PollRunLoop.h"
#include "tests/fakes/FakeItemClaims.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

using Claim = ItemClaims::Claim;

class FakeWorld {
 public:
  std::unique_ptr<ItemClaims> program() { return std::make_unique<FakeItemClaims>(claims_); }
  // Asks while the others are served.
  Claim ask(ItemClaims& program, const Text& path) {
    return program.claim(path, [] {});
  }

 private:
  FakeItemClaims::Claims claims_;
};

class RealWorld {
 public:
  std::unique_ptr<ItemClaims> program() {
    return std::make_unique<SocketItemClaims>(loop_, SocketItemClaims::Activation{});
  }
  Claim ask(ItemClaims& program, const Text& path) {
    auto answer = std::async(std::launch::async, [&] { return program.claim(path, [] {}); });
    (void)loop_.runUntil(
        [&] { return answer.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready; }, 20);
    return answer.get();
  }
  PollRunLoop& loop() { return loop_; }

 private:
  PollRunLoop loop_;
};

template <typename World>
class ItemClaimsContract : public testing::Test {
 protected:
  World world;
  TemporaryFolder folder;
  const Text item = folder / "Sample.app";
  int times = 0;
  const std::function<void()> wanted = [this] { ++times; };
};
using Worlds = testing::Types<FakeWorld, RealWorld>;
TYPED_TEST_SUITE(ItemClaimsContract, Worlds);

TYPED_TEST(ItemClaimsContract, WhoComesFirstHasItAndIsToldOfEachOther) {
  const auto first = this->world.program();
  const auto second = this->world.program();
  ASSERT_EQ(first->claim(this->item, this->wanted), Claim::Ours);
  EXPECT_EQ(this->times, 0);
  EXPECT_EQ(this->world.ask(*second, this->item), Claim::Anothers);
  EXPECT_EQ(this->times, 1);
  EXPECT_EQ(this->world.ask(*second, this->item), Claim::Anothers);
  EXPECT_EQ(this->times, 2);
}

TYPED_TEST(ItemClaimsContract, TwoItemsAreClaimedSideBySide) {
  const auto first = this->world.program();
  const auto second = this->world.program();
  ASSERT_EQ(first->claim(this->item, this->wanted), Claim::Ours);
  EXPECT_EQ(second->claim(this->folder / "Other.app", this->wanted), Claim::Ours);
  EXPECT_EQ(this->times, 0);
}

TYPED_TEST(ItemClaimsContract, WhatEndsHasNothingAnyMore) {
  auto first = this->world.program();
  const auto second = this->world.program();
  ASSERT_EQ(first->claim(this->item, this->wanted), Claim::Ours);
  first.reset();
  EXPECT_EQ(second->claim(this->item, this->wanted), Claim::Ours);
  EXPECT_EQ(this->times, 0);
}

class SocketItemClaimsTest : public testing::Test {
 protected:
  RealWorld world;
  TemporaryFolder folder;
};

TEST_F(SocketItemClaimsTest, AnItemIsTheSameWhateverWayLeadsThere) {
  std::filesystem::create_directory(folder / "Applications");
  std::filesystem::create_directory_symlink(folder / "Applications", folder / "Link");
  const auto first = world.program();
  const auto second = world.program();
  int times = 0;
  ASSERT_EQ(first->claim(folder / "Applications/Sample.app", [&] { ++times; }), Claim::Ours);
  EXPECT_EQ(world.ask(*second, folder / "Link/../Link/Sample.app"), Claim::Anothers);
  EXPECT_EQ(times, 1);
}

TEST_F(SocketItemClaimsTest, DeathFreesTheItemAtOnce) {
  const Text item = folder / "Sample.app";
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    PollRunLoop loop;
    SocketItemClaims claims(loop, {});
    const char told = claims.claim(item, [] {}) == Claim::Ours ? 'y' : 'n';
    (void)!::write(pipe[1], &told, 1);
    for (;;) ::pause();
  }
  char told = 0;
  ASSERT_EQ(::read(pipe[0], &told, 1), 1);
  EXPECT_EQ(told, 'y');
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_EQ(world.program()->claim(item, [] {}), Claim::Ours);
  ::close(pipe[0]);
  ::close(pipe[1]);
}

TEST_F(SocketItemClaimsTest, WhatLetsAProgramComeToTheFrontIsHandedOver) {
  const Text item = folder / "Sample.app";
  std::string order;
  SocketItemClaims first(world.loop(),
                         {.takeOver = [&](const std::string& token) { order += "token " + token; }});
  SocketItemClaims second(world.loop(), {.token = "desktop-7_TIME12"});
  SocketItemClaims third(world.loop(), {});
  ASSERT_EQ(first.claim(item, [&] { order += ", wanted"; }), Claim::Ours);
  EXPECT_EQ(world.ask(second, item), Claim::Anothers);
  EXPECT_EQ(order, "token desktop-7_TIME12, wanted");
  order.clear();
  EXPECT_EQ(world.ask(third, item), Claim::Anothers);
  EXPECT_EQ(order, ", wanted") << "without a token";
}

}  // namespace
}  // namespace halvorn
