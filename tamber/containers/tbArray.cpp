#include <tamber/containers/tbArray.h>

#include <tamber/containers/tbGrowableArray.h>
#include <tamber/io/tbFile.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

struct ElementForm
{
    int size;
    int words; // 4-byte values of one element in a file; 0 for those written otherwise
};

constexpr ElementForm forms[tbArray::NUM_DATA_TYPES] = {
    {2, 0},  // SHORT
    {3, 0},  // UBYTE_VEC3
    {4, 0},  // UBYTE_VEC4
    {4, 1},  // INT
    {4, 1},  // FLOAT
    {8, 2},  // VEC2
    {12, 3}, // VEC3
    {16, 4}, // VEC4
    {8, 0},  // DOUBLE
};

constexpr const char* CLASS_NAME = "tbArray";

std::size_t bytesFor(int count, int elemSize)
{
    return count > 0 ? std::size_t(count) * std::size_t(elemSize) : 0;
}

bool fits(int count, int elemSize)
{
    return count < 1 || elemSize < 1 || std::size_t(count) <= SIZE_MAX / 2 / std::size_t(elemSize);
}

} // namespace

int tbArray::sizeOf(DATA_TYPE type)
{
    return type >= 0 && type < NUM_DATA_TYPES ? forms[type].size : 0;
}

tbArray::tbArray(int number, DATA_TYPE type)
    : typeWord(std::uint16_t(unsigned(type) & TYPE_MASK)),
      count(number)
{
    if (!fits(count, getElemSize()) || !replaceBlock(getByteCount()))
        count = 0;
}

tbArray::tbArray(const tbArray& other) : typeWord(other.typeWord), count(0)
{
    *this = other;
}

tbArray::tbArray(const tbGrowableArray& other) : tbArray(static_cast<const tbArray&>(other)) {}

tbArray::tbArray(const tbArray& other, tbArena* arena) : typeWord(other.typeWord), count(0)
{
    const std::size_t bytes = other.getStoredBytes();
    data = bytes > 0 ? static_cast<unsigned char*>(tbMemory::mallocFrom(arena, bytes)) : nullptr;
    if (bytes > 0 && !data)
        return;
    if (bytes > 0)
        std::memcpy(data, other.data, bytes);
    inArena = true;
    count = other.getNumStored();
}

tbArray& tbArray::operator=(const tbArray& other)
{
    if (this == &other)
        return *this;
    const std::size_t bytes = other.getStoredBytes();
    void* block = bytes > 0 ? tbMemory::malloc(bytes) : nullptr;
    if (bytes > 0 && !block)
        return *this;
    if (bytes > 0)
        std::memcpy(block, other.data, bytes);
    setBlock(block);
    typeWord = other.typeWord;
    count = other.getNumStored();
    return *this;
}

tbArray::~tbArray()
{
    setBlock(nullptr);
}

void tbArray::unRef()
{
    if (refCount.fetch_sub(1, std::memory_order_acq_rel) - 1 < 1)
        delete this;
}

void tbArray::enableDynamic(bool dynamic)
{
    typeWord = std::uint16_t(dynamic ? typeWord | DYNAMIC : typeWord & ~DYNAMIC);
}

std::size_t tbArray::getByteCount() const
{
    return bytesFor(count, getElemSize());
}

int tbArray::countStored() const
{
    return int(std::min(std::size_t(count), getSize() / std::size_t(getElemSize())));
}

std::size_t tbArray::getStoredBytes() const
{
    return bytesFor(getNumStored(), getElemSize());
}

bool tbArray::replaceBlock(std::size_t bytes)
{
    void* block = bytes > 0 ? tbMemory::calloc(bytes, 1) : nullptr;
    if (bytes > 0 && !block)
        return false;
    if (data && block)
        std::memcpy(block, data, std::min(bytes, getSize()));
    setBlock(block);
    return true;
}

void tbArray::setBlock(void* block)
{
    if (!inArena)
        tbMemory::free(data);
    data = static_cast<unsigned char*>(block);
    inArena = false;
    isCut = false;
}

void tbArray::setSize(std::size_t bytes)
{
    if (replaceBlock(bytes))
        isCut = getSize() < getByteCount();
}

void tbArray::write(tbEntry* entry) const
{
    const DATA_TYPE type = getType();
    const int elemSize = getElemSize();
    if (elemSize == 0)
        return;
    const unsigned char zeros[16] = {};
    const int stored = getNumStored();
    for (int i = 0; i < count; ++i)
    {
        const unsigned char* element = i < stored ? data + std::size_t(i) * std::size_t(elemSize) : zeros;
        writeElement(entry, type, element);
    }
}

void tbArray::writeElement(tbEntry* entry, DATA_TYPE type, const unsigned char* element)
{
    switch (type)
    {
    case SHORT:
    {
        short value;
        std::memcpy(&value, element, sizeof value);
        entry->writeShort(value);
        return;
    }
    case DOUBLE:
    {
        double value;
        std::memcpy(&value, element, sizeof value);
        entry->writeDouble(value);
        return;
    }
    case UBYTE_VEC3:
    case UBYTE_VEC4:
        entry->writeChunk(element, forms[type].size);
        return;
    default:
        int words[4];
        std::memcpy(words, element, std::size_t(forms[type].size));
        entry->writeInts(words, forms[type].words);
    }
}

void tbArray::read(tbEntry* entry)
{
    const DATA_TYPE type = getType();
    const int stored = getNumStored();
    switch (type)
    {
    case SHORT:
        entry->readChunk(data, int(getStoredBytes()));
        for (int i = 0; entry->isByteSwapped() && i < stored; ++i)
            std::swap(data[2 * std::size_t(i)], data[2 * std::size_t(i) + 1]);
        return;
    case DOUBLE:
        for (int i = 0; i < stored; ++i)
        {
            const double value = entry->readDouble();
            std::memcpy(data + std::size_t(i) * sizeof value, &value, sizeof value);
        }
        return;
    case UBYTE_VEC3:
    case UBYTE_VEC4:
        entry->readChunk(data, int(getStoredBytes()));
        return;
    case INT:
        entry->readInts(reinterpret_cast<int*>(data), stored);
        return;
    case FLOAT:
    case VEC2:
    case VEC3:
    case VEC4:
        entry->readFloats(reinterpret_cast<float*>(data), stored * forms[type].words);
        return;
    }
}

tbEntry* tbArray::writeRef(tbFile* file, tbEntry* entry) const
{
    tbEntry* own = file->findEntry(this);
    if (!own)
    {
        own = file->newDataEntry(CLASS_NAME, this);
        if (own)
        {
            own->writeShort(short(typeWord));
            own->writeInt(count);
            write(own);
        }
    }
    entry->writeInt(own ? own->getDirNum() : -1);
    return own;
}

tbArray* tbArray::readRef(tbFile* file, tbEntry* entry)
{
    return file->readData<tbArray, &tbArray::readEntry>(entry, CLASS_NAME);
}

tbArray* tbArray::readEntry(tbEntry* entry)
{
    const unsigned word = unsigned(entry->readShort());
    const int number = entry->readInt();
    const DATA_TYPE type = DATA_TYPE(word & TYPE_MASK);
    if (sizeOf(type) == 0)
    {
        entry->fail("an unknown type of array");
        return nullptr;
    }
    if (!entry->checkItems(number, sizeOf(type), type == DOUBLE ? 8 : 1))
        return nullptr;
    auto* array = new tbArray(std::max(number, 0), type);
    if (!array)
        return nullptr;
    array->enableDynamic((word & DYNAMIC) != 0);
    array->read(entry);
    return array;
}
