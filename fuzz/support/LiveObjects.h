#pragma once

#include <fuzz/support/Check.h>

#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbType.h>

#include <vector>

namespace tbfuzz
{
/// Live objects by class.
inline std::vector<int> countObjects()
{
    std::vector<int> numbers;
    for (int i = 0; i < tbType::getNumTypes(); ++i)
        numbers.push_back(tbType::getType(i)->getNum(false));
    return numbers;
}

/// Sees to it that every object that `run` makes is gone after it. What the library makes once and keeps, when it is
/// first needed, is made before the second run.
template <class Run>
void checkNothingStays(Run run)
{
    for (int tries = 0; tries < 3; ++tries)
    {
        const std::vector<int> before = countObjects();
        run();
        if (countObjects() == before)
            return;
    }
    check(false, "every object that was made is gone");
}
} // namespace tbfuzz
