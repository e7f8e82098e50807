#include <charconv>

#include "Core/Notifications.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "tools/kt/Command.h"

namespace halvorn {
namespace {

constexpr double kForEver = 1e9;  // seconds

AnswerRow rowOf(const KTProcess& process) {
  const std::optional<bool> hidden = process.isHidden();
  return {{"pid", std::int64_t{process.unixPID()}},
          {"name", answer(process.name())},
          {"signature", process.signatureString()},
          {"identifier", process.identifier()},
          {"version", process.version()},
          {"front", process.isFrontProcess()},
          {"hidden", hidden ? AnswerValue(*hidden) : AnswerValue()},
          {"background", process.isBackgroundOnly()}};
}

// Answers what is told for that many seconds. Each is seen at once, also through a pipe.
Outcome watch(const Call& call, const char* notification, const char* key) {
  const auto observation =
      call.system.notifications().addObserver(notification, nullptr, [&](const Notification& told) {
        call.answer({{key, answer(told.text(key))}});
        std::fflush(stdout);
      });
  call.system.runUntil([] { return std::ferror(stdout) != 0; }, call.number("--seconds", kForEver));
  return Outcome::Done;
}

Outcome ps(const Call& call) {
  for (const KTProcessPointer& process : call.system.processes().allProcesses()) call.answer(rowOf(*process));
  std::fflush(stdout);
  return call.has("--watch") ? watch(call, KTProcessChangeNotification, "change") : Outcome::Done;
}

Outcome quit(const Call& call) {
  if (call.words.size() != 1) return Outcome::Misused;
  const auto code = fourCharCodeFromText(call.words[0]);
  const KTProcessPointer process = call.system.processes().processWithSignature(code);
  if (!process) return Outcome::No;
  const bool hasQuit =
      process->quitRunningApplicationWithTimeout(static_cast<float>(call.number("--timeout", 4.0)));
  call.answer({{"quit", hasQuit}});
  return hasQuit ? Outcome::Done : Outcome::No;
}

Outcome front(const Call& call) {
  const KTProcessPointer process = call.system.processes().frontProcess();
  if (!process) return Outcome::No;
  call.answer(rowOf(*process));
  return Outcome::Done;
}

Outcome observe(const Call& call) {
  if (call.words.size() < 2) return Outcome::Misused;
  const std::string digits = call.words[0].bytes();
  std::int32_t pid = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), pid);
  const KTProcessPointer process = call.system.processes().processWithPID(pid);
  if (!process) return Outcome::No;
  process->installAXObserver();
  for (std::size_t i = 1; i < call.words.size(); ++i) process->addAXNotification(call.words[i]);
  return watch(call, KTProcessUINotification, "event");
}

}  // namespace

const std::map<Text, Command>& processCommands() {
  static const std::map<Text, Command> commands = {
      {"ps", ps}, {"quit", quit}, {"front", front}, {"observe", observe}};
  return commands;
}

}  // namespace halvorn
