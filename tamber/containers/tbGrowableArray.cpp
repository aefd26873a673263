#include <tamber/containers/tbGrowableArray.h>

#include <algorithm>
#include <cstring>

tbGrowableArray::tbGrowableArray(DATA_TYPE type) : tbArray(0, type) {}

tbGrowableArray::tbGrowableArray(int number, DATA_TYPE type) : tbArray(number, type) {}

// Copies take the storage, with nothing of it in use.
tbGrowableArray::tbGrowableArray(const tbArray& other) : tbArray(other) {}

tbGrowableArray::tbGrowableArray(const tbGrowableArray& other) : tbArray(static_cast<const tbArray&>(other))
{
}

void tbGrowableArray::grow(int n)
{
    const int wanted = std::max(n, 1);
    const std::size_t elemSize = std::size_t(getElemSize());
    if (elemSize > 0 && std::size_t(wanted) > SIZE_MAX / 2 / elemSize)
        return;
    if (!replaceBlock(elemSize * std::size_t(wanted)))
        return;
    setCount(wanted);
    used = std::min(used, wanted);
}

int tbGrowableArray::getIndex(const void* elem) const
{
    const std::size_t size = std::size_t(getElemSize());
    const auto* elements = static_cast<const unsigned char*>(getData());
    const int num = getNum();
    for (int i = 0; i < num && elements; ++i)
        if (std::memcmp(elements + std::size_t(i) * size, elem, size) == 0)
            return i;
    return -1;
}

void tbGrowableArray::removeElem(const void* elem)
{
    const int index = getIndex(elem);
    if (index < 0)
        return;
    used = getNum() - 1;
    if (index < used)
    {
        const std::size_t size = std::size_t(getElemSize());
        unsigned char* gap = static_cast<unsigned char*>(getData()) + std::size_t(index) * size;
        std::memmove(gap, gap + size, std::size_t(used - index));
    }
}

void tbGrowableArray::read(tbEntry* entry)
{
    tbArray::read(entry);
    used = getCapacity();
}
