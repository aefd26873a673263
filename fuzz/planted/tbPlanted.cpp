// A module that nobody may load: it lies in the current directory and on the PATH of the target.
#include <cstdio>
#include <cstdlib>

namespace
{
class Planted
{
public:
    Planted()
    {
        std::fputs("finding: broken rule: a planted module was loaded\n", stderr);
        std::abort();
    }
};

Planted planted;
} // namespace
