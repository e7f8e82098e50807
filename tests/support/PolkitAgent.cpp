// The authentication agent of tests: kt_polkit_agent PID MODE
//
// Answers for the process PID, as the program that shows the password dialog would. MODE:
//   right    types the right password
//   wrong    types a wrong one three times and gives up
//   cancel   dismisses the dialog
//   vanish   ends as soon as it is asked
// and with "wait-" before it, only after a line came on standard input.
// Prints "registered", then "icon: <name>" and "asked: <action> <message>" each time.
#define POLKIT_AGENT_I_KNOW_API_IS_SUBJECT_TO_CHANGE 1
#include <polkitagent/polkitagent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

constexpr const char* kRightPassword = "right-password";
constexpr int kMostAttempts = 3;

const std::string waiting = "wait-";
std::string mode;

struct Conversation {
  GTask* task;
  PolkitIdentity* identity;
  std::string cookie;
  int attempts = 0;
};

void startSession(Conversation* conversation);

void onRequest(PolkitAgentSession* session, const char*, gboolean, gpointer) {
  polkit_agent_session_response(session, mode == "right" ? kRightPassword : "wrong-password");
}

void onCompleted(PolkitAgentSession* session, gboolean gained, gpointer data) {
  auto* conversation = static_cast<Conversation*>(data);
  g_object_unref(session);
  std::printf("attempt %d: %s\n", conversation->attempts, gained ? "accepted" : "not accepted");
  if (!gained && conversation->attempts < kMostAttempts) return startSession(conversation);
  g_task_return_boolean(conversation->task, TRUE);
  g_object_unref(conversation->task);
  g_object_unref(conversation->identity);
  delete conversation;
}

void startSession(Conversation* conversation) {
  ++conversation->attempts;
  PolkitAgentSession* session =
      polkit_agent_session_new(conversation->identity, conversation->cookie.c_str());
  g_signal_connect(session, "request", G_CALLBACK(onRequest), nullptr);
  g_signal_connect(session, "completed", G_CALLBACK(onCompleted), conversation);
  polkit_agent_session_initiate(session);
}

void begin(PolkitAgentListener* listener, const gchar* action, const gchar* message, const gchar* icon,
           PolkitDetails*, const gchar* cookie, GList* identities, GCancellable* cancellable,
           GAsyncReadyCallback done, gpointer data) {
  std::printf("icon: %s\nasked: %s %s\n", icon, action, message);
  if (mode.starts_with(waiting)) {
    // The dialog is on the screen, and the person thinks.
    std::string line;
    std::getline(std::cin, line);
    mode.erase(0, waiting.size());
  }
  if (mode == "vanish") std::_Exit(0);
  GTask* task = g_task_new(listener, cancellable, done, data);
  if (mode == "cancel") {
    g_task_return_new_error(task, POLKIT_ERROR, POLKIT_ERROR_CANCELLED, "dismissed");
    g_object_unref(task);
    return;
  }
  auto* identity = static_cast<PolkitIdentity*>(g_object_ref(identities->data));
  startSession(new Conversation{task, identity, cookie, 0});
}

gboolean finish(PolkitAgentListener*, GAsyncResult* result, GError** error) {
  return g_task_propagate_boolean(G_TASK(result), error);
}

struct TestListener {
  PolkitAgentListener parent;
};
struct TestListenerClass {
  PolkitAgentListenerClass parent;
};
G_DEFINE_TYPE(TestListener, test_listener, POLKIT_AGENT_TYPE_LISTENER)
void test_listener_init(TestListener*) {}
void test_listener_class_init(TestListenerClass* type) {
  type->parent.initiate_authentication = begin;
  type->parent.initiate_authentication_finish = finish;
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 64;
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  mode = words[2];
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  GError* error = nullptr;
  PolkitSubject* subject =
      polkit_unix_process_new_for_owner(std::atoi(words[1]), 0, static_cast<gint>(::getuid()));
  auto* listener = static_cast<PolkitAgentListener*>(g_object_new(test_listener_get_type(), nullptr));
  if (polkit_agent_listener_register(listener, POLKIT_AGENT_REGISTER_FLAGS_NONE, subject,
                                     "/org/halvorn/agent", nullptr, &error) == nullptr) {
    std::printf("not registered: %s\n", error->message);
    return 1;
  }
  std::puts("registered");
  g_main_loop_run(loop);
  return 0;
}
