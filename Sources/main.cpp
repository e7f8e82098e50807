// The installer program.
#include "Sources/main_application.h"

int main(int argumentCount, char** arguments) { return halvorn::applicationMain(argumentCount, arguments); }
