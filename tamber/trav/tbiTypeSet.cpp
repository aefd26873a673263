#include <tamber/trav/tbiTypeSet.h>

#include <algorithm>

tbiTypeSet::~tbiTypeSet()
{
    tbMemory::free(order);
}

void tbiTypeSet::resize(int numTypes)
{
    tbMemory::free(order);
    const int numWords = numTypes / BITS + 1;
    order = static_cast<int*>(tbMemory::calloc(std::size_t(numTypes + numWords), sizeof(int)));
    words = order ? reinterpret_cast<std::uint32_t*>(order + numTypes) : nullptr;
    capacity = order ? numTypes : 0;
    num = 0;
}

// What is removed was mostly added last.
void tbiTypeSet::remove(int type)
{
    if (!contains(type))
        return;
    words[type / BITS] &= ~bit(type);
    int i = num - 1;
    while (order[i] != type)
        --i;
    std::copy(order + i + 1, order + num, order + i);
    --num;
}

void tbiTypeSet::clear()
{
    for (int type : *this)
        words[type / BITS] &= ~bit(type);
    num = 0;
}
