#include <tamber/trav/tbTravPath.h>

#include <tamber/trav/tbTravStack.h>
#include <tamber/trav/tbiSamePath.h>

#include <algorithm>

tbTravPath::tbTravPath(const tbTravStack& stack)
{
    *this = stack;
}

tbTravPath::tbTravPath(const tbTravPath& other)
{
    *this = other;
}

tbTravPath& tbTravPath::operator=(const tbTravStack& stack)
{
    if (!resize(stack.getNum()))
        return *this;
    for (int i = 0; i < count; ++i)
        groups[i] = stack.get(i);
    code = stack.getID();
    return *this;
}

tbTravPath& tbTravPath::operator=(const tbTravPath& other)
{
    if (this == &other || !resize(other.count))
        return *this;
    std::copy_n(other.groups, count, groups);
    code = other.code;
    return *this;
}

tbTravPath::~tbTravPath()
{
    tbMemory::free(groups);
}

bool tbTravPath::operator==(const tbTravPath& other) const
{
    return tbiSamePath(*this, other);
}

bool tbTravPath::operator==(const tbTravStack& stack) const
{
    return tbiSamePath(*this, stack);
}

bool tbTravPath::contains(const tbGroup* group) const
{
    return std::find(groups, groups + count, group) != groups + count;
}

// False, and the path empty, when memory is out.
bool tbTravPath::resize(int newCount)
{
    if (newCount > 0)
    {
        void* block = tbMemory::realloc(groups, std::size_t(newCount) * sizeof(*groups));
        if (!block)
        {
            code = 0;
            count = 0;
            return false;
        }
        groups = static_cast<const tbGroup**>(block);
    }
    count = newCount;
    return true;
}
