// What the tool does for its own safety before anything else.
//
// Whoever started it chose its descriptors, signals, limits, folder and environment, and stays beside it
// while it works with administrator rights.
#pragma once

namespace halvorn {

enum class ProcessStart {
  Ordinary,    // no administrator rights: nothing was changed but the standard streams, which are open now
  Privileged,  // administrator rights, and nothing left of what was inherited
  Unsafe,  // rights that came from the program file (set-user-id and the like), or that could not be cut down
};

// To be called first in main(), once, by the only thread. When privileged, afterwards:
// - only the standard streams are open; whoever waits at the other end of standard
//   input knows that the tool runs;
// - signals have their default actions, pipe and file-size signals apart (ignored), none is
//   blocked, no timer runs; when somebody asked, the process is in a session of its own, out of
//   reach of the asking program's terminal, and is scheduled and served like any other;
// - limits of size and time are lifted, no core is written, the folder is "/", the file mask is 077;
// - the environment is PATH and what tells for whom the tool works: who asked, else
//   where this user's folders are;
// - of the rights only those to files' owners and modes and to changing the user are left, no program that
//   would be started could gain any, and nobody without rights can look into the process.
[[nodiscard]] ProcessStart secureProcess();

// Whether each of the paths, up to the null pointer, is absolute and has no "..": the folder that a relative
// path was meant from is not known to a process that somebody else started.
[[nodiscard]] bool arePlainPaths(const char* const* paths);

}  // namespace halvorn
