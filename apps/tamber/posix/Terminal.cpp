#include "../Terminal.h"

#include <unistd.h>

bool isErrorOnTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

void printPlainLines() {}
