#pragma once

#include <tamber/kernel/tbMemory.h>

// A stack of pointers with a change counter, by which whoever keeps a copy of the top tells that it may have
// changed. Holds up to 32,767 entries; a push beyond is refused and changes nothing. Nothing is locked.
class TB_API tbStack : public tbAllocated<tbStack>
{
public:
    static constexpr int MAX_ENTRIES = 32'767;

    /// `startCapacity` slots, at least 1; more are taken when needed.
    explicit tbStack(int startCapacity = 1);
    tbStack(const tbStack& other);
    /// Takes over the entries; the change counter goes on from its own value.
    tbStack& operator=(const tbStack& other);
    ~tbStack();

    /// False when it was refused.
    bool push(void* entry)
    {
        if (top + 1 >= capacity && !makeRoom())
            return false;
        data[++top] = entry;
        changed();
        return true;
    }
    /// The top entry, taken out; null when empty. Counts as a change in both cases.
    void* pop()
    {
        changed();
        return top >= 0 ? data[top--] : nullptr;
    }
    /// Replaces the top entry when there is one. Counts as a change in both cases.
    void setTop(void* entry)
    {
        changed();
        if (top >= 0)
            data[top] = entry;
    }
    void* getTop() const { return top >= 0 ? data[top] : nullptr; }
    /// Entry `i` from the bottom, not range checked.
    void* get(int i) const { return data[i]; }
    /// -1 when empty.
    int getTopIndex() const { return top; }
    int getNum() const { return top + 1; }
    int getCapacity() const { return capacity; }
    bool isEmpty() const { return top < 0; }
    /// The change counter; it wraps around.
    int getID() const { return changes; }
    void reset()
    {
        changed();
        top = -1;
    }

private:
    void changed() { changes = std::int16_t(std::uint16_t(changes) + 1u); }
    /// Doubles the storage. False when the stack is full or memory is out.
    bool makeRoom();
    bool reserve(int slots);

    void** data = nullptr;
    int capacity = 0;
    std::int16_t top = -1;
    std::int16_t changes = 0;
};
