// The small parts of the process adapters that need no process.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "Core/FourCharCode.h"
#include "Platform/bundles/linux/ResourceFork.h"
#include "Platform/processes/linux/atspi/AtSpiEvents.h"
#include "Platform/processes/linux/dbus/BusApplication.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/Program.h"
#include "Platform/processes/linux/proc/Signatures.h"
#include "Platform/processes/linux/x11/WindowOwners.h"

namespace halvorn {
namespace {

std::string statLine(const std::string& name) {
  return "4711 (" + name + ") S 1 2 3 0 -1 4194304 10 0 0 0 627 37 0 0 20 0 1 0 382453 485249024 1 0\n";
}

TEST(ProcStat, FieldsAreCountedAfterTheLastParenthesisWhateverTheNameHolds) {
  for (const std::string name :
       {"plain", "two words", "a) R 1 1 1", "((", "line\nfeed", ")", "", "\xFF\xFE"}) {
    const auto stat = parseProcStat(statLine(name));
    ASSERT_TRUE(stat) << name;
    EXPECT_EQ(stat->name, name);
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->userTicks, 627u);
    EXPECT_EQ(stat->startTicks, 382453u);
  }
}

TEST(ProcStat, WhatIsCutOffOrNoNumberIsNothing) {
  const std::string line = statLine("x");
  for (const std::string& content :
       {std::string(), std::string("4711"), std::string("4711 (x"), line.substr(0, 30),
        std::string("1 ) ( S 1 2 3"), std::string("1 (x) S 1 2 3 0 -1 4 1 0 0 0 x y 0 0 2 0 1 0 z 4")}) {
    EXPECT_FALSE(parseProcStat(content)) << content;
  }
}

TEST(ProcStatus, UsersAndNamespaceIdsAreRead) {
  const auto status =
      parseProcStatus("Name:\tx\\nUid:\t0\t0\nState:\tS\nUid:\t1000\t1001\t3\t4\nNSpid:\t4711\t2\n");
  ASSERT_TRUE(status);
  EXPECT_EQ(status->realUser, 1000u);
  EXPECT_EQ(status->effectiveUser, 1001u);
  EXPECT_EQ(status->namespacePids, (std::vector<pid_t>{4711, 2}));
  EXPECT_FALSE(parseProcStatus("Name:\tx\n"));
  EXPECT_FALSE(parseProcStatus("Uid:\tx\ty\n"));
}

TEST(Signatures, OnlyACodeThatIsDeclaredAndCanBeWrittenCounts) {
  const struct {
    PropertyDictionary info;
    bool isDeclared;
    const char* why;
  } rows[] = {{{{"CFBundleSignature", "EDIT"}}, true, "four characters"},
              {{{"CFBundleSignature", "a b "}}, true, "blanks are characters"},
              {{{"CFBundleSignature", "????"}}, false, "stands for none"},
              {{{"CFBundleSignature", ""}}, false, "empty"},
              {{{"CFBundleSignature", "ABC"}}, false, "too short"},
              {{{"CFBundleSignature", "ABCDE"}}, false, "too long"},
              {{{"CFBundleSignature", "日本語版"}}, false, "cannot be converted"},
              {{{"CFBundleSignature",
                 "A\x01"
                 "CD"}},
               false,
               "a control character"},
              {{{"CFBundleSignature", 0x45444954}}, false, "no text"},
              {{}, false, "missing"}};
  for (const auto& row : rows) {
    const FourCharCode code = signatureFrom(row.info, "org.example.x");
    EXPECT_EQ(code != derivedSignature("org.example.x"), row.isDeclared) << row.why;
  }
}

TEST(Signatures, NoTextEverConvertsToADerivedOne) {
  std::set<FourCharCode> seen;
  for (int i = 0; i < 20'000; ++i) {
    const FourCharCode code = derivedSignature(Text("org.example." + std::to_string(i)));
    EXPECT_NE(code, 0u);
    EXPECT_EQ(fourCharCodeFromText(textFromFourCharCode(code)), 0u) << std::hex << code;
    EXPECT_EQ(textFromFourCharCode(code).length(), 4u);
    seen.insert(code);
  }
  EXPECT_GT(seen.size(), 19'900u);
  EXPECT_EQ(derivedSignature("org.example.x"), derivedSignature("org.example.x"));
}

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

TEST(DesktopSessions, DifferOnlyWhereBothSaySo) {
  const auto session = [](const std::vector<std::string>& entries) { return DesktopSession::from(entries); };
  const struct {
    std::vector<std::string> a;
    std::vector<std::string> b;
    bool differ;
  } rows[] = {{{}, {}, false},
              {{"DISPLAY=:0"}, {}, false},
              {{"DISPLAY=:0"}, {"DISPLAY=:0.0"}, false},
              {{"DISPLAY=:0"}, {"DISPLAY=unix:0"}, false},
              {{"DISPLAY=:0"}, {"DISPLAY=:1"}, true},
              {{"DISPLAY=:0"}, {"DISPLAY=localhost:0"}, true},
              {{"WAYLAND_DISPLAY=wayland-0"}, {"DISPLAY=:0"}, false},
              {{"WAYLAND_DISPLAY=wayland-0"}, {"WAYLAND_DISPLAY=wayland-1"}, true},
              {{"XDG_SESSION_ID=2", "DISPLAY=:0"}, {"XDG_SESSION_ID=3", "DISPLAY=:0"}, true}};
  for (const auto& row : rows) {
    EXPECT_EQ(session(row.a).differsFrom(session(row.b)), row.differ);
    EXPECT_EQ(session(row.b).differsFrom(session(row.a)), row.differ);
  }
}

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

TEST(ObjectPaths, AreMadeOfBusNames) {
  EXPECT_EQ(objectPathFor("org.example.My-App"), "/org/example/My_App");
}

TEST(AtSpiEvents, EveryKnownNotificationHasItsSignals) {
  const auto focused = eventsForNotification("AXFocusedUIElementChanged", AtSpiToolkit::Qt);
  ASSERT_EQ(focused.size(), 1u);
  EXPECT_EQ(focused[0].registered, "object:state-changed:focused");
  EXPECT_EQ(focused[0].interface, "org.a11y.atspi.Event.Object");
  EXPECT_EQ(focused[0].member, "StateChanged");
  EXPECT_EQ(focused[0].detail, "focused");
  EXPECT_EQ(focused[0].number, 1);
  EXPECT_EQ(eventsForNotification("AXWindowCreated", AtSpiToolkit::Gtk)[0].interface,
            "org.a11y.atspi.Event.Window");
  EXPECT_EQ(eventsForNotification("AXValueChanged", AtSpiToolkit::Other).size(), 4u);
  for (const AtSpiToolkit toolkit : {AtSpiToolkit::Qt, AtSpiToolkit::Gtk, AtSpiToolkit::Other}) {
    EXPECT_TRUE(eventsForNotification("AXNonsense", toolkit).empty());
    EXPECT_TRUE(eventsForNotification("AXWindowMoved", toolkit).empty());
    EXPECT_TRUE(eventsForNotification("", toolkit).empty());
  }
  EXPECT_TRUE(eventsForNotification("AXWindowCreated", AtSpiToolkit::Qt).empty());
  EXPECT_EQ(eventsForNotification("AXWindowCreated", AtSpiToolkit::Other).size(), 1u);
  EXPECT_EQ(toolkitNamed("Qt"), AtSpiToolkit::Qt);
  EXPECT_EQ(toolkitNamed("gtk"), AtSpiToolkit::Gtk);
  EXPECT_EQ(toolkitNamed("GTK"), AtSpiToolkit::Other);
}

class ResourceForks : public testing::Test {
 protected:
  static std::string number(std::uint32_t value, int size) {
    std::string result;
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
      result.push_back(static_cast<char>(value >> shift));
    return result;
  }
  // A fork with the resources 'TEXT' 5 "hello" and 'vers' 1, the four bytes.
  static std::string fork() {
    const std::string data = number(5, 4) + "hello" + number(4, 4) + std::string("\x03\x20\x12\x01", 4);
    const std::string types =
        number(1, 2) + "TEXT" + number(0, 2) + number(18, 2) + "vers" + number(0, 2) + number(30, 2);
    const std::string references = number(5, 2) + number(0xFFFF, 2) + number(0, 4) + number(0, 4) +
                                   number(1, 2) + number(0xFFFF, 2) + number(9, 4) + number(0, 4);
    const std::string map = std::string(24, '\0') + number(28, 2) + number(100, 2) + types + references;
    const std::uint32_t mapStart = 16 + static_cast<std::uint32_t>(data.size());
    return number(16, 4) + number(mapStart, 4) + number(static_cast<std::uint32_t>(data.size()), 4) +
           number(static_cast<std::uint32_t>(map.size()), 4) + data + map;
  }
};

TEST_F(ResourceForks, ResourcesAreFoundByTypeAndNumber) {
  EXPECT_EQ(resourceIn(fork(), fourCharCode("TEXT"), 5), "hello");
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), 1), std::string("\x03\x20\x12\x01", 4));
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), 2), std::nullopt);
  EXPECT_EQ(resourceIn(fork(), fourCharCode("vers"), -1), std::nullopt);
  EXPECT_EQ(resourceIn(fork(), fourCharCode("STR "), 5), std::nullopt);
}

TEST_F(ResourceForks, TruncatedForksHoldNothingAndHarmNobody) {
  const std::string whole = fork();
  for (std::size_t length = 0; length < whole.size() - 8; ++length) {
    EXPECT_EQ(resourceIn(whole.substr(0, length), fourCharCode("vers"), 1), std::nullopt) << length;
  }
}

TEST_F(ResourceForks, EveryByteMayBeAnyByte) {
  const std::string whole = fork();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const char byte : {'\0', '\x7F', '\x80', '\xFF'}) {
      std::string damaged = whole;
      damaged[i] = byte;
      const auto found = resourceIn(damaged, fourCharCode("vers"), 1);
      EXPECT_TRUE(!found || found->size() <= whole.size());
    }
  }
}

TEST_F(ResourceForks, AppleDoubleFilesCarryOne) {
  const std::string file = number(0x00051607, 4) + number(0x00020000, 4) + std::string(16, '\0') +
                           number(2, 2) + number(9, 4) + number(50, 4) + number(4, 4) + number(2, 4) +
                           number(54, 4) + number(4, 4) + "infofork";
  EXPECT_EQ(resourceForkInAppleDouble(file), "fork");
  EXPECT_EQ(resourceForkInAppleDouble(file.substr(0, file.size() - 1)), std::nullopt);
  EXPECT_EQ(resourceForkInAppleDouble("not one"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
