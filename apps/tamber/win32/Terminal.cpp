#include "../Terminal.h"

#include <io.h>

bool isErrorOnTerminal()
{
    return _isatty(2) != 0;
}
