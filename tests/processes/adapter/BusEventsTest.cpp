// Events between applications on a session bus of the test's own.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "Platform/processes/linux/dbus/BusAppleEvents.h"
#include "tests/fakes/ChangedServices.h"
#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

constexpr FourCharCode kOpen = fourCharCode("oapp");
constexpr FourCharCode kReopen = fourCharCode("rapp");
constexpr FourCharCode kDocuments = fourCharCode("odoc");
constexpr FourCharCode kQuit = fourCharCode("quit");

class BusEvents : public LiveFixture {
 protected:
  void SetUp() override {
    startDesktop({.display = false, .bus = true});
    if (desktop) useBus(desktop->busAddress());
  }
  void useBus(const std::string& address) {
    // The events and the model need each other; the real program makes them in the same order.
    watch({});
    events = std::make_unique<BusAppleEvents>(live->running, address);
    model = std::make_unique<KTProcessClass>(
        changedServices(live->processes.services(), {.appleEvents = events.get()}));
  }
  ChildProcess& startOnBus(const std::vector<std::string>& habits) {
    std::vector<std::string> all = {"--bus", "org.example.Bus-Zoo"};
    all.insert(all.end(), habits.begin(), habits.end());
    return startBundle("Editor", "EDIT", all);
  }
  int sendQuit(const ChildProcess& child) {
    const auto number = live->source.processForPID(child.pid());
    if (!number) return -1;
    const auto address = events->addressOf(*number);
    const auto event = events->createEvent(kCoreEventClass, kQuit, *std::get<0>(address));
    return std::get<0>(event)->send({});
  }
  void send(const ChildProcess& child, FourCharCode eventID, float timeout = 2.0F) {
    model->processWithPID(child.pid())->sendAppleEvent(kCoreEventClass, eventID, timeout);
  }

  std::unique_ptr<BusAppleEvents> events;
  std::unique_ptr<KTProcessClass> model;
};

TEST_F(BusEvents, QuitIsTheActionThatTheApplicationExports) {
  for (const char* habit : {"--bus-actions", "--bus-toolkit", "--bus-application"}) {
    ChildProcess& child = startOnBus({habit, "--ignores-term"});
    EXPECT_EQ(sendQuit(child), 0) << habit;
    EXPECT_EQ(child.waitForEnd(5), 0) << habit;
    EXPECT_TRUE(child.waitForOutput("bus quit", kTestPatience)) << habit;
  }
}

TEST_F(BusEvents, AnApplicationWithoutAQuitActionDoesNotHandleIt) {
  ChildProcess& nothing = startOnBus({});
  EXPECT_EQ(sendQuit(nothing), -1708);
  nothing.end(SIGKILL);
  ChildProcess& otherActions = startOnBus({"--bus-other-actions"});
  EXPECT_EQ(sendQuit(otherActions), -1708);
  EXPECT_TRUE(otherActions.isRunning());
  EXPECT_EQ(sendQuit(startBundle("Mail", "MAIL")), -1708);  // not on the bus at all
}

TEST_F(BusEvents, OnlyTheOneItIsMeantForIsAsked) {
  ChildProcess& bystander = startOnBus({"--bus-actions"});
  ChildProcess& target = startBundle("Mail", "MAIL");
  EXPECT_EQ(sendQuit(target), -1708);
  giveItAMoment(bystander);
  EXPECT_TRUE(bystander.isRunning());
}

TEST_F(BusEvents, AnApplicationThatIsGoneCannotBeSentAnything) {
  ChildProcess& child = startOnBus({"--bus-actions"});
  const KTProcessPointer editor = model->processWithPID(child.pid());
  EXPECT_EQ(editor->name(), Text("Editor"));
  child.end(SIGKILL);
  editor->quit();
  editor->sendAppleEvent(kCoreEventClass, kReopen, 1.0F);
  EXPECT_EQ(live->log.lines(),
            (Strings{"cannot quit Editor: no pid", "quitting Editor failed (-600; could not send event)",
                     "*** event error: -600"}));
}

TEST_F(BusEvents, OpenReopenAndDocumentsAreThoseOfTheApplicationInterface) {
  ChildProcess& child = startOnBus({"--bus-application"});
  send(child, kOpen);
  EXPECT_TRUE(child.waitForOutput("bus Activate\n", kTestPatience));
  send(child, kReopen);
  EXPECT_TRUE(child.waitForOutput("bus Activate\nbus Activate\n", kTestPatience));
  send(child, kDocuments);
  EXPECT_TRUE(child.waitForOutput("bus Open\n", kTestPatience));
  EXPECT_TRUE(live->log.lines().empty());
}

TEST_F(BusEvents, AnyOtherEventIsNotHandled) {
  ChildProcess& child = startOnBus({"--bus-application"});
  model->processWithPID(child.pid())->sendAppleEvent(kCoreEventClass, fourCharCode("xyzw"), 1.0F);
  model->processWithPID(child.pid())->sendAppleEvent(fourCharCode("misc"), kOpen, 1.0F);
  EXPECT_EQ(live->log.lines(), (Strings{"*** event error: -1708", "*** event error: -1708"}));
}

TEST_F(BusEvents, AnApplicationThatDoesNotAnswerTimesOut) {
  ChildProcess& child = startOnBus({"--bus-silent"});
  const double start = testSeconds();
  send(child, kReopen, 0.5F);
  EXPECT_GE(testSeconds() - start, 0.45);
  EXPECT_LT(testSeconds() - start, 20.0) << "the bus itself would wait 25 seconds";
  EXPECT_EQ(live->log.lines(), Strings{"*** event error: -1712"});
}

TEST_F(BusEvents, ABusThatGoesAwayIsAsGoodAsNone) {
  ChildProcess& child = startOnBus({"--bus-actions"});
  EXPECT_EQ(sendQuit(startBundle("Mail", "MAIL")), -1708);  // connected now
  desktop->bus()->end(SIGKILL);
  const double start = testSeconds();
  EXPECT_EQ(sendQuit(child), -1708);
  EXPECT_LT(testSeconds() - start, 20.0);
}

TEST_F(BusEvents, WithoutABusEventsAreNotHandledAndNothingHangs) {
  // A socket that takes connections and never says a word.
  const std::string silent = folder / "silent";
  const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  silent.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listening, 5), 0);
  ChildProcess& child = startBundle("Editor", "EDIT");
  for (const std::string& bus : {std::string(), std::string("unix:path=/nowhere/bus"),
                                 std::string("nonsense"), "unix:path=" + silent}) {
    const double start = testSeconds();
    useBus(bus);
    EXPECT_EQ(sendQuit(child), -1708) << bus;
    EXPECT_LT(testSeconds() - start, 20.0) << bus;
  }
  ::close(listening);
}

}  // namespace
}  // namespace halvorn
