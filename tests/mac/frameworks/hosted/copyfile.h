// The copying engine of the system, for a C library that has none.
#pragma once

#include <cstdint>

extern "C" {

typedef struct copyfile_state* copyfile_state_t;
typedef std::uint32_t copyfile_flags_t;
copyfile_state_t copyfile_state_alloc(void);
int copyfile_state_free(copyfile_state_t state);
int copyfile_state_set(copyfile_state_t state, std::uint32_t flag, const void* value);
int copyfile(const char* from, const char* to, copyfile_state_t state, copyfile_flags_t flags);

}  // extern "C"

#define COPYFILE_STATE_STATUS_CB 6
#define COPYFILE_STATE_STATUS_CTX 7

#define COPYFILE_ACL (1 << 0)
#define COPYFILE_STAT (1 << 1)
#define COPYFILE_XATTR (1 << 2)
#define COPYFILE_DATA (1 << 3)
#define COPYFILE_ALL (COPYFILE_ACL | COPYFILE_STAT | COPYFILE_XATTR | COPYFILE_DATA)
#define COPYFILE_RECURSIVE (1 << 15)
#define COPYFILE_EXCL (1 << 17)
#define COPYFILE_NOFOLLOW_SRC (1 << 18)
#define COPYFILE_NOFOLLOW_DST (1 << 19)
#define COPYFILE_CLONE (1 << 24)

#define COPYFILE_RECURSE_FILE 1
#define COPYFILE_RECURSE_DIR 2
#define COPYFILE_ERR 3
#define COPYFILE_CONTINUE 0
#define COPYFILE_QUIT 2
