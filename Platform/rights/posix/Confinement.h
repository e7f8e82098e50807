// Walls that a process puts up around itself, for as long as it lives and against itself.
// Why: docs/decisions/032-the-tool-confines-itself.md
#pragma once

#include <vector>

namespace halvorn::Confinement {

enum class Answer {
  Done,
  NotHere,  // this system has no such walls
  Failed,   // it has, and they could not be put up
};

// From here on this process works on files, with threads of its own, and a system call for anything else ends
// it at once: no network and no socket, no other program or process, no look into another and no signal to it,
// no mount, no other user for good, no memory that could be run as a program, no device made or spoken to. A
// file is not given set-id bits (the call fails). Thread: the only one there is. To be called when accounts
// have been asked for: the libraries that know them speak to services.
[[nodiscard]] Answer keepToFiles();

// The items (descriptors, perhaps opened only to name them) at and below which something may be done.
struct Trees {
  std::vector<int> toRead;
  std::vector<int> toWrite;  // and to read, and to move from one of them into another
};

// From here on this process opens, lists, makes, moves and removes files nowhere else. What is open stays
// open; looking at files, changing their owners, modes and times, and naming them is not affected. Thread: the
// only one there is; this process must have given up the rights of programs that it would start.
[[nodiscard]] Answer keepToTrees(const Trees& trees);

}  // namespace halvorn::Confinement
