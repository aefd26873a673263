#include <tamber/platform/tbiConsole.h>

// A POSIX process is born with its stdout.
void tbiOpenConsole() {}
