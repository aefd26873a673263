#include <tamber/containers/tbStack.h>

#include <algorithm>
#include <cstring>

tbStack::tbStack(int startCapacity)
{
    reserve(std::max(startCapacity, 1));
}

tbStack::tbStack(const tbStack& other) : tbStack(other.capacity)
{
    *this = other;
    changes = other.changes;
}

tbStack& tbStack::operator=(const tbStack& other)
{
    if (this == &other)
        return *this;
    const int num = other.getNum();
    if (num > capacity && !reserve(num))
        return *this;
    if (num > 0)
        std::memcpy(data, other.data, std::size_t(num) * sizeof(void*));
    top = other.top;
    changed();
    return *this;
}

tbStack::~tbStack()
{
    tbMemory::free(data);
}

bool tbStack::makeRoom()
{
    return getNum() < MAX_ENTRIES && reserve(std::max(capacity, 1) * 2);
}

bool tbStack::reserve(int slots)
{
    slots = std::min(slots, MAX_ENTRIES);
    void* block = tbMemory::realloc(data, std::size_t(slots) * sizeof(void*));
    if (!block)
        return false;
    data = static_cast<void**>(block);
    capacity = slots;
    return true;
}
