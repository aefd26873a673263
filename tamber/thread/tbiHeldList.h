#pragma once

#include <tamber/containers/tbList.h>

// A copy of a list that keeps the objects alive: what walks it may change the list itself. Short lists need no memory.
template <class T>
class tbiHeldList
{
public:
    tbiHeldList() = default;
    ~tbiHeldList()
    {
        for (int i = count - 1; i >= 0; --i)
            objects[i]->unRef();
    }
    tbiHeldList(const tbiHeldList&) = delete;
    tbiHeldList& operator=(const tbiHeldList&) = delete;

    /// Called once, under whatever guards `list`.
    void take(const tbTList<T*>& list)
    {
        if (list.getNum() > NUM_FIRST)
        {
            more = list;
            objects = more.begin();
            count = more.getNum();
        }
        else
        {
            for (T* object : list)
                first[count++] = object;
        }
        for (T* object : *this)
            object->ref();
    }

    int getNum() const { return count; }
    T* operator[](int i) const { return objects[i]; }
    T* const* begin() const { return objects; }
    T* const* end() const { return objects + count; }

private:
    static constexpr int NUM_FIRST = 16;

    T* first[NUM_FIRST];
    T** objects = first;
    int count = 0;
    tbTList<T*> more;
};
