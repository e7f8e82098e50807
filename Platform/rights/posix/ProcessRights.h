// The rights of this process beyond those of an ordinary user, and what others may do to it.
#pragma once

namespace halvorn::ProcessRights {

// Whether the program file gave them (set-user-id and the like), so that whoever can run it has them.
[[nodiscard]] bool comeFromTheFile();

// Keeps the rights to files' owners and modes, to reaching any file, and to becoming another user; gives up
// all others for good, also for programs that would be started, and lets nobody without rights look into this
// process. Fails: false when a right could not be given up.
[[nodiscard]] bool keepThoseToFiles();

// Sets back what whoever started this process may have chosen of how it is served: its scheduling class and
// nice value, its priority for disks, the processors it may use, how soon it is ended when memory runs out,
// how exact its timers are, and which older system is imitated for it. Where a part cannot be had, it stays.
void takeUsualShare();

// Takes back an arrangement that ends this process together with the one that started it.
void outliveStarter();

}  // namespace halvorn::ProcessRights
