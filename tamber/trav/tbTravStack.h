#pragma once

#include <tamber/containers/tbStack.h>

class tbGroup;

// The groups from the root of a walk down to the current node. An identity code, the exclusive-or of the groups'
// addresses, tells most different paths apart at once. Groups are not referenced.
class TB_API tbTravStack : public tbStack
{
public:
    explicit tbTravStack(int startCapacity = 1) : tbStack(startCapacity) {}

    /// False when it was refused.
    bool push(const tbGroup* group)
    {
        if (!tbStack::push(const_cast<tbGroup*>(group)))
            return false;
        code ^= codeOf(group);
        return true;
    }
    /// Null when empty.
    const tbGroup* pop()
    {
        const tbGroup* group = static_cast<const tbGroup*>(tbStack::pop());
        code ^= codeOf(group);
        return group;
    }
    const tbGroup* getTop() const { return static_cast<const tbGroup*>(tbStack::getTop()); }
    /// Group `i` from the root, not range checked.
    const tbGroup* get(int i) const { return static_cast<const tbGroup*>(tbStack::get(i)); }
    void reset()
    {
        tbStack::reset();
        code = 0;
    }
    /// The identity code: equal for equal paths.
    std::uint32_t getID() const { return code; }

    bool operator==(const tbTravStack& other) const;

private:
    void setTop(void*) = delete; // it would leave the code behind

    static std::uint32_t codeOf(const tbGroup* group)
    {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(group));
    }

    std::uint32_t code = 0;
};
