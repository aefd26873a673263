#include "../Terminal.h"

#include <fcntl.h>
#include <io.h>

bool isErrorOnTerminal()
{
    return _isatty(2) != 0;
}

void printPlainLines()
{
    _setmode(1, _O_BINARY);
    _setmode(2, _O_BINARY);
}
