// Rules: an authorization is freed by whoever created it; the person's cancel is a status of its own; the tool is a child of
// the asking process, and the call does not tell its id (Authorization Services Reference). A tool that is not there is
// errAuthorizationToolExecuteFailure.
#include <Security/Security.h>
#include <spawn.h>
#include <unistd.h>

#include <cstring>

#include "tests/mac/frameworks/FakeMac.h"
#include "tests/mac/frameworks/FakeObjects.h"

struct AuthorizationOpaqueRef {
  bool isGranted;
};

using fakemac::state;

extern "C" {

OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization) {
  if (state().authorizationCreation != 0) return state().authorizationCreation;
  if (rights != nullptr || environment != nullptr || flags != kAuthorizationFlagDefaults) return -60011;
  *authorization = new AuthorizationOpaqueRef{false};
  fakemac::countGiven();
  return errAuthorizationSuccess;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment*, AuthorizationFlags flags,
                                 AuthorizationRights** granted) {
  if (rights->count != 1 || granted != nullptr) return -60001;
  state().rightsAsked.push_back({rights->items[0].name, flags});
  if (state().onRightsAsked) state().onRightsAsked();
  const_cast<AuthorizationOpaqueRef*>(authorization)->isGranted = state().authorizationAnswer == 0;
  return state().authorizationAnswer;
}

OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* tool,
                                            AuthorizationFlags flags, char* const* arguments, FILE** pipe) {
  if (!authorization->isGranted || flags != kAuthorizationFlagDefaults || pipe != nullptr) return -60005;
  if (::access(tool, X_OK) != 0) return -60031;
  std::vector<char*> words = {const_cast<char*>(tool)};
  for (; *arguments != nullptr; ++arguments) words.push_back(*arguments);
  words.push_back(nullptr);
  pid_t child = 0;
  return ::posix_spawn(&child, tool, nullptr, nullptr, words.data(), environ) == 0 ? errAuthorizationSuccess
                                                                                   : -60031;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags) {
  delete authorization;
  fakemac::countTaken();
  return flags == kAuthorizationFlagDefaults ? errAuthorizationSuccess : -60011;
}

}  // extern "C"
