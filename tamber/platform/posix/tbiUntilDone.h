#pragma once

#include <cerrno>

/// Makes a system call again as long as a signal interrupts it.
template <class Call>
auto tbiUntilDone(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}
