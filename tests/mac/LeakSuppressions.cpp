// Only in builds with sanitizers: what GNUstep and its runtime keep to the end of the program is no leak of ours, neither in
// a case nor in a program that only names its cases. What the adapters were given is counted by the made-up frameworks, and
// every case asks for the count.

// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizer calls it by this name.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libobjc.so\nleak:libgnustep-base.so\nleak:libgnustep-gui.so\nleak:libfontconfig.so\n";
}
// NOLINTEND(bugprone-reserved-identifier)
