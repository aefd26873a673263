#pragma once

#include <tamber/kernel/tbMemory.h>

#include <atomic>

class tbGrowableArray;

// A reference-counted array of one of nine element types, which knows its type and saves itself to a file. Nothing
// but the reference count is locked.
class TB_API tbArray : public tbAllocated<tbArray>
{
public:
    enum DATA_TYPE : int
    {
        SHORT = 0,
        UBYTE_VEC3 = 1,
        UBYTE_VEC4 = 2,
        INT = 3,
        FLOAT = 4,
        VEC2 = 5,
        VEC3 = 6,
        VEC4 = 7,
        DOUBLE = 8
    };
    static constexpr int NUM_DATA_TYPES = 9;

    /// `count` zeroed elements, none when it is below 1 or memory is out. Types unknown here have elements of size 0.
    tbArray(int count, DATA_TYPE type);
    /// Copies have count 0.
    tbArray(const tbArray& other);
    tbArray(const tbGrowableArray& other);
    /// A short-lived copy whose elements lie in `arena`: never released, its destructor never runs.
    tbArray(const tbArray& other, tbArena* arena);
    /// Takes type, dynamic flag and elements; the reference count stays.
    tbArray& operator=(const tbArray& other);
    ~tbArray();

    void ref() { refCount.fetch_add(1, std::memory_order_relaxed); }
    /// Frees the elements and the array with the last reference.
    void unRef();
    int getRefCount() const { return refCount.load(std::memory_order_relaxed); }

    DATA_TYPE getType() const { return DATA_TYPE(typeWord & TYPE_MASK); }
    bool isDynamic() const { return (typeWord & DYNAMIC) != 0; }
    void enableDynamic(bool dynamic);
    int getElemSize() const { return sizeOf(getType()); }
    int getNum() const { return count; }
    /// The storage block's size in bytes.
    std::size_t getSize() const { return inArena ? getByteCount() : tbMemory::getSize(data); }
    void* getData() { return data; }
    const void* getData() const { return data; }
    /// A block of `bytes` bytes that begins with what the old one held, zeros behind; the count is not changed.
    /// Unchanged when memory is out.
    void setSize(std::size_t bytes);

    /// The elements in order.
    void write(tbEntry* entry) const;
    /// Reads as many elements as the array has.
    void read(tbEntry* entry);
    /// Writes this array's entry index into `entry`, and the array first when the file does not hold it yet. Null,
    /// and index -1, when the file takes no more.
    tbEntry* writeRef(tbFile* file, tbEntry* entry) const;
    /// Reads an entry index and returns that entry's array, read on first use; null when the index names no whole
    /// array. The file keeps the array until it closes; holders take their own references.
    static tbArray* readRef(tbFile* file, tbEntry* entry);

    /// Bytes of one element, 0 for an unknown type.
    static int sizeOf(DATA_TYPE type);

protected:
    /// Replaces the storage by a zeroed block of `bytes` bytes that begins with the old bytes. False, and nothing
    /// changed, when memory is out.
    bool replaceBlock(std::size_t bytes);
    void setCount(int n) { count = n; }
    /// Elements that the storage holds: fewer than the count says once setSize() has made it smaller.
    int getNumStored() const { return isCut ? countStored() : count; }

private:
    static constexpr unsigned TYPE_MASK = 0xFFF;
    static constexpr unsigned DYNAMIC = 0x8000;

    static tbArray* readEntry(tbEntry* entry);
    static void writeElement(tbEntry* entry, DATA_TYPE type, const unsigned char* element);
    std::size_t getByteCount() const;
    int countStored() const;
    std::size_t getStoredBytes() const;
    void setBlock(void* block);

    unsigned char* data = nullptr;
    std::atomic<std::int32_t> refCount{0};
    std::uint16_t typeWord;
    bool inArena = false;
    bool isCut = false; // setSize() made the storage smaller than the count says
    std::int32_t count;
};
