// How much of what the system counts is left for this process.
#pragma once

namespace halvorn {

// Whether so many more files can be open, and so many more threads run, at the same time. Thread: any.
[[nodiscard]] bool canHaveDescriptors(int count);
[[nodiscard]] bool canHaveThreads(int count);

}  // namespace halvorn
