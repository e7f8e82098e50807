// Only for `./dev check --mac`: names that GNUstep's headers put into the objects, inlined, and the SDK's do not. Nothing calls
// what stands here; without it the programs would not link there.
extern "C" {

void throughNoHeader() __asm__("__NSRangeExceptionRaise");
void throughNoHeader() { __builtin_trap(); }
void* contextOfGnustep() __asm__("_GSCurrentContext");
void* contextOfGnustep() { __builtin_trap(); }
extern long placeOfMethods __asm__("_OBJC_IVAR_$_NSGraphicsContext.methods");
long placeOfMethods = 0;

}  // extern "C"
