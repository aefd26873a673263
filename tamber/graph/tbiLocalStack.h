#pragma once

#include <tamber/kernel/tbMemory.h>

#include <cstring>
#include <type_traits>

// A stack of plain values with room for a few in place: walks of ordinary depth take no memory.
template <class T, unsigned Inline = 24>
class tbiLocalStack
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    tbiLocalStack() : data(inlineData) {}
    tbiLocalStack(const tbiLocalStack&) = delete;
    tbiLocalStack& operator=(const tbiLocalStack&) = delete;
    ~tbiLocalStack()
    {
        if (data != inlineData)
            tbMemory::free(data);
    }

    bool isEmpty() const { return count == 0; }
    std::size_t getNum() const { return count; }
    /// The stack is not empty.
    T& top() { return data[count - 1]; }
    T pop() { return data[--count]; }
    /// False when memory is out.
    bool push(const T& value)
    {
        if (count == capacity && !grow())
            return false;
        data[count++] = value;
        return true;
    }

private:
    bool grow()
    {
        const std::size_t bytes = capacity * 2 * sizeof(T);
        const bool inPlace = data == inlineData;
        void* block = inPlace ? tbMemory::malloc(bytes) : tbMemory::realloc(data, bytes);
        if (!block)
            return false;
        if (inPlace)
            std::memcpy(block, inlineData, sizeof inlineData);
        data = static_cast<T*>(block);
        capacity *= 2;
        return true;
    }

    T inlineData[Inline];
    T* data;
    std::size_t count = 0;
    std::size_t capacity = Inline;
};
