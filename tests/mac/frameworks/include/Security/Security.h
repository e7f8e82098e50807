// What the macOS adapters use of Security: administrator rights.
#pragma once

#include <cstddef>
#include <cstdio>

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

typedef const struct AuthorizationOpaqueRef* AuthorizationRef;
typedef UInt32 AuthorizationFlags;
typedef const char* AuthorizationString;
struct AuthorizationItem {
  AuthorizationString name;
  std::size_t valueLength;
  void* value;
  UInt32 flags;
};
struct AuthorizationItemSet {
  UInt32 count;
  AuthorizationItem* items;
};
typedef AuthorizationItemSet AuthorizationRights;
typedef AuthorizationItemSet AuthorizationEnvironment;
enum {
  kAuthorizationFlagDefaults = 0,
  kAuthorizationFlagInteractionAllowed = 1,
  kAuthorizationFlagExtendRights = 2,
  kAuthorizationFlagPreAuthorize = 16
};
enum { errAuthorizationSuccess = 0, errAuthorizationCanceled = -60006 };
OSStatus AuthorizationCreate(const AuthorizationRights* rights, const AuthorizationEnvironment* environment,
                             AuthorizationFlags flags, AuthorizationRef* authorization);
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                                 AuthorizationRights** granted);
OSStatus AuthorizationExecuteWithPrivileges(AuthorizationRef authorization, const char* tool,
                                            AuthorizationFlags flags, char* const* arguments, FILE** pipe);
OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags);

}  // extern "C"
