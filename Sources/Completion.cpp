#include "Sources/Completion.h"

#include "Core/ForPeople.h"
#include "Core/Format.h"
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/bundles/Defaults.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/running/Clock.h"
#include "Platform/running/MainThread.h"
#include "Platform/session/DesktopMessages.h"
#include "Platform/window/Application.h"
#include "Platform/window/Notices.h"
#include "Platform/window/ScreenReader.h"
#include "Sources/CompletionSound.h"

namespace halvorn {
namespace {

// Who waited less is still looking, even when the launched product has come in front.
constexpr double kLongInstallation = 10.0;  // seconds

}  // namespace

Completion::Completion(const CompletionServices& services, const InstallerOutlets& outlets,
                       const ArgumentDictionary& arguments)
    : services_(services), outlets_(outlets), arguments_(arguments) {}

void Completion::installationFinished(const InstallOutcome& outcome) {
  if (outcome.kind() == InstallOutcome::Kind::Installed) {
    showSuccess();
  } else {
    showFailure(outcome);
  }
  outlets_.installButton.setEnabled(Enabled::Yes);
  outlets_.progressIndicator.stopAnimation();
  scheduleQuit();
}

void Completion::installationBegins() {
  began_ = services_.clock.monotonicSeconds();
  services_.notices.withdraw();
}

void Completion::showFailure(const InstallOutcome& outcome) {
  const Text& message = outcome.message();
  // KEEP: the message field stays hidden, so the page looks as before the click and can be used again.
  outlets_.messageField.setStringValue(message);
  outlets_.cancelButton.setEnabled(Enabled::Yes);
  if (message.isEmpty()) return;
  services_.screenReader.announce(message);
  // Who sees the page takes the button for a dead one unless somebody says what became of the click.
  const Text reason = outcome.reason() ? formatForPeople("\r%@", *outcome.reason()) : Text();
  tell(message + reason, Told::AsFailure);
}

void Completion::showSuccess() {
  showFinalMessage("%@ was successfully installed.");
  outlets_.checkmarkField.setHidden(Hidden::No);
  outlets_.cancelButton.setHidden(Hidden::Yes);
  outlets_.cancelButton.setEnabled(Enabled::No);
  if (!services_.defaults.boolForKey("nosound")) playDoneSound();
  const bool isLong = services_.clock.monotonicSeconds() - began_ >= kLongInstallation;
  if (isLong && !outlets_.window.isKeyWindow()) tell(outlets_.introField.stringValue(), Told::AsResult);
}

// Around the window: in it a failure is not seen, and a success not while other windows lie over it.
void Completion::tell(const Text& sentence, Told how) {
  Notice notice;
  notice.title = outlets_.window.title();
  notice.text = sentence;
  notice.selected = [&window = outlets_.window] { window.makeKeyAndOrderFront(); };
  if (how == Told::AsFailure) {
    notice.kind = Notice::Kind::Failure;
    notice.notShown = [&messages = services_.messages, sentence,
                       product = arguments_.text(KTInstallerKeyProductName).value_or(Text())] {
      messages.tell(product, sentence);
    };
    if (logFile_) {
      notice.actionTitle = services_.strings.localized("Show Log");
      // An opener that does not start has nothing the person could act on here.
      notice.action = [&workspace = services_.workspace, path = *logFile_] {
        static_cast<void>(workspace.openFile(path));
      };
    }
  }
  services_.notices.show(notice);
  if (!outlets_.window.isKeyWindow()) services_.application.requestUserAttention();
}

void Completion::scheduleQuit() {
  const OptionalText value = arguments_.text(KTInstallerCompletionQuit);
  if (!value) return;
  const float delay = value->floatValue();
  services_.log("quit delay: %1.1f", delay);
  if (delay > 0)
    services_.mainThread.performAfter(delay,
                                      [&application = services_.application] { application.terminate(); });
}

void Completion::showFinalMessage(const Text& message) {
  outlets_.cancelButton.setHidden(Hidden::Yes);
  outlets_.installButton.setTitle(services_.strings.localized("OK"));
  outlets_.installButton.setDescription(services_.strings.localized("Ends the installer"));
  outlets_.pathField.setHidden(Hidden::Yes);
  outlets_.explanationField.setHidden(Hidden::Yes);
  outlets_.messageField.setHidden(Hidden::Yes);
  outlets_.helpButton.setHidden(Hidden::Yes);
  const Text shown =
      formatForPeople(services_.strings.localized(message), arguments_.text(KTInstallerKeyProductName));
  outlets_.introField.setStringValue(shown);
  finished_ = true;
  services_.screenReader.announce(shown);
}

void Completion::playDoneSound() { services_.sound.play(arguments_.text(KTInstallerCompletionSound)); }

}  // namespace halvorn
