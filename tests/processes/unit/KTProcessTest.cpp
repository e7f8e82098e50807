// Process objects and their cache.
#include "KTStuff/KTClasses/KTProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/processes/unit/KTProcessFixture.h"

namespace halvorn {
namespace {

class KTProcessCache : public KTProcessFixture {};

TEST_F(KTProcessCache, TwoLookupsOfOneProcessGiveTheIdenticalObject) {
  const FakeApplication& editor = start("Editor");
  EXPECT_EQ(object(editor), object(editor));
  EXPECT_EQ(processes.processWithPID(editor.pid), object(editor));
  EXPECT_EQ(processes.allProcesses().at(1), object(editor));
}

TEST_F(KTProcessCache, AnEndedProcessIsGoneFromTheCacheAfterItsEventAndIsMadeAnew) {
  FakeApplication& editor = start("Editor");
  const KTProcessPointer before = object(editor);
  applications.endAndTell(editor);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber(editor.number), nullptr);
  const KTProcessPointer after = object(editor);
  EXPECT_NE(after, before);
  EXPECT_TRUE(after->isEqual(before));
  EXPECT_EQ(after->hash(), before->hash());
}

TEST_F(KTProcessCache, TheEnumeratorIsNilBeforeTheFirstLookup) {
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
  object(start("Editor"));
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
}

TEST_F(KTProcessCache, TheEnumeratorIsEmptyAndNotNilOnceEverythingHasEnded) {
  FakeApplication& editor = start("Editor");
  object(editor);
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::vector<KTProcessPointer>{});
}

TEST_F(KTProcessCache, TheMostRecentlyAskedForStandsInFront) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  const FakeApplication& c = start("C");
  const KTProcessPointer objectA = object(a);
  const KTProcessPointer objectB = object(b);
  const KTProcessPointer objectC = object(c);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectC, objectB, objectA}));
  EXPECT_EQ(processes.cachedProcessWithSerialNumber(a.number), objectA);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectA, objectC, objectB}));
  object(c);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectC, objectA, objectB}));
}

TEST_F(KTProcessCache, AskingForThePositionMovesNothing) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), KTProcessClass::kNotFound);
  EXPECT_EQ(KTProcessClass::kNotFound, 9223372036854775807);
  object(a);
  object(b);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(b.number), 0);
}

TEST_F(KTProcessCache, CleanupTakesOutEveryEndedProcessNeighboursToo) {
  std::vector<FakeApplication*> all;
  std::vector<KTProcessPointer> objects;
  for (int i = 0; i < 6; ++i) {
    all.push_back(&start("App"));
    objects.push_back(object(*all.back()));
  }
  for (const int i : {0, 1, 2, 5}) applications.end(*all[static_cast<std::size_t>(i)]);
  processes.cleanupCache();
  EXPECT_EQ(*processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{objects[4], objects[3]}));
}

TEST_F(KTProcessCache, CleanupWithoutACacheDoesNothing) {
  processes.cleanupCache();
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
}

TEST_F(KTProcessCache, AddToCachePutsTheReceiverInFront) {
  const FakeApplication& editor = start("Editor");
  const KTProcessPointer made = KTProcess::create(processes, editor.number);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
  made->addToCache();
  EXPECT_EQ(object(editor), made);
}

TEST_F(KTProcessCache, OfTwoObjectsForOneProcessTheOneInFrontIsFound) {
  FakeApplication& editor = start("Editor");
  const KTProcessPointer first = object(editor);
  const KTProcessPointer second = KTProcess::create(processes, editor.number);
  second->addToCache();
  EXPECT_EQ(object(editor), second);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), 0);
  object(start("Mail"));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), 1);
  first->addToCache();
  EXPECT_EQ(object(editor), first);
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), KTProcessClass::kNotFound);
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
}

TEST_F(KTProcessCache, TwoProcessesWithEqualHashesAreTwo) {
  const KTProcessPointer one = processes.processWithSerialNumber({1, 5});
  const KTProcessPointer other = processes.processWithSerialNumber({2, 4});
  EXPECT_EQ(one->hash(), other->hash());
  EXPECT_NE(one, other);
  EXPECT_FALSE(one->isEqual(other));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({1, 5}), 1);
  EXPECT_EQ(processes.processWithSerialNumber({1, 5}), one);
  EXPECT_EQ(processes.processWithSerialNumber({2, 4}), other);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber({3, 3}), nullptr);
}

// A system that has several numbers for one process: those that end in the same digit.
class KTProcessCacheWithManyNumbers : public KTProcessCache {
 protected:
  KTProcessCacheWithManyNumbers() {
    applications.isSame = [](ProcessSerialNumber a, ProcessSerialNumber b) {
      return a.low % 10 == b.low % 10;
    };
  }
};

TEST_F(KTProcessCacheWithManyNumbers, TwoNumbersOfOneProcessGiveOneObject) {
  const KTProcessPointer first = processes.processWithSerialNumber({0, 11});
  const KTProcessPointer second = processes.processWithSerialNumber({0, 12});
  EXPECT_EQ(processes.processWithSerialNumber({7, 21}), first);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber({7, 32}), second);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{second, first}));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({9, 41}), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({9, 43}), KTProcessClass::kNotFound);
}

TEST_F(KTProcessCacheWithManyNumbers, OfTwoObjectsForOneProcessTheOneInFrontIsFound) {
  const KTProcessPointer first = processes.processWithSerialNumber({0, 11});
  const KTProcessPointer second = KTProcess::create(processes, {0, 21});
  second->addToCache();
  // Also by the very number of the one behind.
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({0, 11}), 0);
  EXPECT_EQ(processes.processWithSerialNumber({0, 11}), second);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{second, first}));
}

TEST_F(KTProcessCache, ALongCacheKeepsItsOrder) {
  std::vector<KTProcessPointer> expected;
  for (std::uint32_t i = 0; i < 300; ++i) {
    expected.insert(expected.begin(), processes.processWithSerialNumber({i / 3, i}));
  }
  for (const std::uint32_t i : {17u, 299u, 0u, 17u}) {
    const auto asked =
        std::find(expected.begin(), expected.end(), processes.processWithSerialNumber({i / 3, i}));
    ASSERT_NE(asked, expected.end());
    std::rotate(expected.begin(), asked, asked + 1);
    EXPECT_EQ(processes.cachedProcessesEnumerator(), expected);
  }
}

TEST_F(KTProcessCache, ACachedObjectOutlivesItsCallers) {
  FakeApplication& editor = start("Editor");
  const std::weak_ptr<KTProcess> watched = object(editor);
  EXPECT_FALSE(watched.expired());
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_TRUE(watched.expired());
}

TEST_F(KTProcessCache, EveryWayToAProcessInstallsTheHandlerAndOnlyOnce) {
  const FakeApplication& editor = start("Editor");
  const std::vector<std::function<void(FakeProcesses&)>> ways = {
      [](FakeProcesses& p) { p.processes.installNotifications(); },
      [&](FakeProcesses& p) { std::ignore = KTProcess::create(p.processes, editor.number); },
      [](FakeProcesses& p) { std::ignore = p.processes.currentProcess(); },
      [](FakeProcesses& p) {
        p.applications.current = std::nullopt;
        std::ignore = p.processes.currentProcess();
      },
      [](FakeProcesses& p) { std::ignore = p.processes.allProcesses(); },
      [](FakeProcesses& p) { std::ignore = p.processes.processWithSignature(1); },
      [](FakeProcesses& p) { std::ignore = p.processes.processWithIdentifier("x"); },
  };
  for (const auto& way : ways) {
    FakeProcesses fresh;
    EXPECT_EQ(fresh.applications.handlersInstalled, 0);
    way(fresh);
    way(fresh);
    EXPECT_EQ(fresh.applications.handlersInstalled, 1);
  }
}

TEST_F(KTProcessCache, TheFactoriesAnswerNullWhenThePlatformFindsNothing) {
  EXPECT_EQ(processes.processWithPID(4711), nullptr);
  EXPECT_EQ(processes.frontProcess(), nullptr);
  EXPECT_EQ(processes.processWithSignature(fourCharCode("NONE")), nullptr);
  EXPECT_EQ(processes.processWithIdentifier("org.example.none"), nullptr);
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(KTProcessCache, TheCurrentProcessIsLookedUpOnceAndFailureIsTriedAgain) {
  const auto number = applications.current;
  applications.current = std::nullopt;
  EXPECT_EQ(processes.currentProcess(), nullptr);
  applications.current = number;
  const KTProcessPointer current = processes.currentProcess();
  ASSERT_NE(current, nullptr);
  applications.current = start("Other").number;
  EXPECT_EQ(processes.currentProcess(), current);
}

TEST_F(KTProcessCache, TheFrontProcessIsAskedForAfreshEachTime) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  applications.front = a.number;
  EXPECT_EQ(processes.frontProcess(), object(a));
  applications.front = b.number;
  EXPECT_EQ(processes.frontProcess(), object(b));
}

TEST_F(KTProcessCache, AllProcessesKeepTheOrderOfThePlatform) {
  start("Zebra");
  start("Ape");
  Strings names;
  for (const auto& process : processes.allProcesses()) names.push_back(process->name()->bytes());
  EXPECT_EQ(names, (Strings{"Installer", "Zebra", "Ape"}));
}

TEST_F(KTProcessCache, TheOrderOfThePlatformNeedNotBeThatOfTheNumbers) {
  start("Zebra", "BBBB");
  const FakeApplication& newest = start("Ape", "BBBB");
  applications.listOrder = FakeApplications::ListOrder::NewestFirst;
  Strings names;
  for (const auto& process : processes.allProcesses()) names.push_back(process->name()->bytes());
  EXPECT_EQ(names, (Strings{"Ape", "Zebra", "Installer"}));
  EXPECT_EQ(processes.processWithSignature(fourCharCode("BBBB")), object(newest));
}

TEST_F(KTProcessCache, AProcessThatCannotBeReadDoesNotEndTheSearchForASignature) {
  applications.start({.name = "Hidden", .informationFails = true});
  const FakeApplication& editor = start("Editor");
  EXPECT_EQ(processes.processWithSignature(fourCharCode("EDIT")), object(editor));
}

TEST_F(KTProcessCache, TheFirstProcessWithASignatureIsFound) {
  start("A", "AAAA");
  const FakeApplication& first = start("B", "BBBB");
  start("B2", "BBBB");
  EXPECT_EQ(processes.processWithSignature(fourCharCode("BBBB")), object(first));
}

TEST_F(KTProcessCache, ASearchForASignatureMakesNoOtherObjects) {
  start("A", "AAAA");
  const FakeApplication& b = start("B", "BBBB");
  EXPECT_NE(processes.processWithSignature(fourCharCode("BBBB")), nullptr);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(), std::vector<KTProcessPointer>{object(b)});
}

TEST_F(KTProcessCache, TheFirstProcessWithAnIdentifierIsFound) {
  applications.start({.name = "None"});
  const FakeApplication& mail = applications.start({.name = "Mail", .identifier = "org.example.mail"});
  applications.start({.name = "Mail 2", .identifier = "org.example.mail"});
  EXPECT_EQ(processes.processWithIdentifier("org.example.mail"), object(mail));
  // The first process without an identifier has the empty one.
  EXPECT_EQ(processes.processWithIdentifier(""), processes.currentProcess());
}

TEST_F(KTProcessCache, EqualityMeansTheSameProcessAndNotTheSameObject) {
  const FakeApplication& editor = start("Editor");
  const KTProcessPointer one = KTProcess::create(processes, editor.number);
  const KTProcessPointer other = KTProcess::create(processes, editor.number);
  EXPECT_TRUE(one->isEqual(*one));
  EXPECT_TRUE(one->isEqual(other));
  EXPECT_EQ(one->hash(), other->hash());
  EXPECT_TRUE(one->isSameProcess(editor.number));
  EXPECT_FALSE(one->isEqual(object(start("Other"))));
  EXPECT_FALSE(one->isEqual(KTProcessPointer()));
}

TEST_F(KTProcessCache, NothingButAProcessEqualsAProcess) {
  const KTProcessPointer editor = object(start("Editor"));
  EXPECT_FALSE(editor->isEqual(std::any()));
  EXPECT_FALSE(editor->isEqual(std::any(Text("Editor"))));
  EXPECT_TRUE(editor->isEqual(std::any(editor)));
}

TEST_F(KTProcessCache, TheHashIsTheSumOfBothHalvesModulo32Bits) {
  EXPECT_EQ(KTProcess::create(processes, {0x80000001, 0x80000002})->hash(), 3u);
  EXPECT_EQ(KTProcess::create(processes, {7, 35})->hash(), 42u);
}

TEST_F(KTProcessCache, ProcessesAreOrderedByNameWithoutRegardToCase) {
  const KTProcessPointer ape = object(start("ape"));
  const KTProcessPointer zebra = object(start("Zebra"));
  EXPECT_EQ(ape->compare(*zebra), Ordering::Ascending);
  EXPECT_EQ(zebra->compare(*ape), Ordering::Descending);
  EXPECT_EQ(ape->compare(*object(start("APE"))), Ordering::Same);
}

TEST_F(KTProcessCache, TheDescriptionNamesTheProcessItsSignatureAndItsVersion) {
  EXPECT_EQ(object(start("Editor", "EDIT"))->description(), Text("Process \"Editor\" (EDIT) 1.0"));
}

}  // namespace
}  // namespace halvorn
