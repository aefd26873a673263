#include "Command.h"

std::vector<std::pair<int, std::string>> Command::getExitCodes() const
{
    return {{0, "The command did its work."},
            {getFailureCode(), "It failed, and one line on stderr says why; or the command line was wrong."}};
}
