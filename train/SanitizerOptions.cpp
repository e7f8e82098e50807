// Only in builds with sanitizers: the search for leaks traces the process at its end, and a process with
// administrator rights lets nobody trace it.
// The sanitizer gives the name.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __asan_default_options();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }
