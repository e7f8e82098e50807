// Only in builds with sanitizers: the search for leaks traces the process at its end, and a process with
// administrator rights lets nobody trace it.

// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizer calls it by this name.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }
// NOLINTEND(bugprone-reserved-identifier)
