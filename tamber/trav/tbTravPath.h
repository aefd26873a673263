#pragma once

#include <tamber/kernel/tbMemory.h>

class tbGroup;
class tbTravStack;

// A stored path: the groups of a travel stack, root first, with the stack's identity code. Groups are not
// referenced.
class TB_API tbTravPath : public tbAllocated<tbTravPath>
{
public:
    tbTravPath() = default;
    explicit tbTravPath(const tbTravStack& stack);
    tbTravPath(const tbTravPath& other);
    /// A path that finds no memory for its groups becomes empty.
    tbTravPath& operator=(const tbTravStack& stack);
    tbTravPath& operator=(const tbTravPath& other);
    ~tbTravPath();

    bool operator==(const tbTravPath& other) const;
    bool operator==(const tbTravStack& stack) const;

    /// Null outside 0 to getNum() - 1.
    const tbGroup* get(int i) const { return i >= 0 && i < count ? groups[i] : nullptr; }
    int getNum() const { return count; }
    std::uint32_t getID() const { return code; }
    bool contains(const tbGroup* group) const;

private:
    bool resize(int newCount);

    std::uint32_t code = 0;
    std::int32_t count = 0;
    const tbGroup** groups = nullptr;
};
