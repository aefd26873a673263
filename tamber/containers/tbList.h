#pragma once

#include <tamber/kernel/tbMemory.h>

#include <bit>
#include <cstring>
#include <type_traits>

// Storage of the pointer lists: blocks of slots from the heap, or from the arena whose index the list carries.
class TB_API tbListStorage
{
public:
    static constexpr unsigned COUNT_BITS = 22;
    static constexpr unsigned COUNT_MASK = (1u << COUNT_BITS) - 1;

    /// The arena's index in bits 22..31; 0 for null and for arenas whose index does not fit, which means the heap.
    static unsigned arenaBits(tbArena* arena) noexcept;
    static tbArena* arenaOf(unsigned word) noexcept;
    /// A block of `slots` slots that begins with the `used` slots of `old`; null and `old` untouched when memory
    /// is out. Heap blocks are reallocated, arena blocks are left to their arena.
    static void* resize(void* old, int used, int slots, unsigned word) noexcept;
    static void free(void* block, unsigned word) noexcept;
};

// An unordered growable array of pointers whose storage lives in the heap or in an arena. The count shares a word
// with the arena's index: at most 4,194,303 entries. Nothing is locked; bounds are the caller's duty except in the
// check... forms. Searches run from the last entry to the first, so the last match wins.
template <class T>
class tbTList : public tbAllocated<tbTList<T>>
{
    static_assert(sizeof(T) == sizeof(void*) && std::is_trivially_copyable_v<T>, "lists hold pointers");

public:
    constexpr tbTList() noexcept = default;
    /// `capacity` slots, none below 1, from `arena` or, when it is null, from the heap.
    explicit tbTList(int capacity, tbArena* arena = nullptr) : countWord(tbListStorage::arenaBits(arena))
    {
        if (capacity > 0)
            reserve(capacity);
    }
    tbTList(const tbTList& other) : tbAllocated<tbTList>() { *this = other; }
    /// Copies entries and count; the target keeps its own kind of storage.
    tbTList& operator=(const tbTList& other)
    {
        if (this == &other)
            return *this;
        const int n = other.getNum();
        if (n > slots && !growTo(n))
            return *this;
        if (n > 0)
            std::memcpy(data, other.data, std::size_t(n) * sizeof(T));
        setCount(n);
        return *this;
    }
    ~tbTList()
    {
        tbListStorage::free(data, countWord);
        data = nullptr;
        countWord = 0;
        slots = 0;
    }

    bool operator==(const tbTList& other) const
    {
        const int n = getNum();
        return n == other.getNum() &&
               (n == 0 || std::memcmp(data, other.data, std::size_t(n) * sizeof(T)) == 0);
    }

    int getNum() const { return int(countWord & tbListStorage::COUNT_MASK); }
    int getCapacity() const { return slots; }
    bool indexInRange(int i) const { return i >= 0 && i < getNum(); }
    T& operator[](int i) { return data[i]; }
    const T& operator[](int i) const { return data[i]; }
    void getValue(int i, T* out) const { *out = data[i]; }
    T* begin() { return data; }
    T* end() { return data + getNum(); }
    const T* begin() const { return data; }
    const T* end() const { return data + getNum(); }

    bool isArenaList() const { return (countWord & ~tbListStorage::COUNT_MASK) != 0; }
    tbArena* getArena() const { return tbListStorage::arenaOf(countWord); }

    /// The last entry equal to `p`, -1 when there is none.
    int getIndex(const T& p) const
    {
        for (int i = getNum() - 1; i >= 0; --i)
            if (data[i] == p)
                return i;
        return -1;
    }
    bool contains(const T& p) const { return getIndex(p) >= 0; }

    /// Appends and returns the new entry's index; -1 when the list is full or memory is out.
    int add(T p)
    {
        const int n = getNum();
        if (slots <= n + 1 && !growTo(n + 1))
            return -1;
        data[n] = p;
        setCount(n + 1);
        return n;
    }
    /// False when `p` stands in the list already.
    bool addUnique(T p) { return !contains(p) && add(p) >= 0; }
    /// Moves entries i.. up by one and stores `p` at i; the count becomes max(i, count) + 1. Entries between the
    /// old count and i keep what the storage held.
    void insert(int i, T p)
    {
        const int n = getNum();
        if (i < 0 || i >= MAX_NUM || n >= MAX_NUM)
            return;
        const int wanted = (i > n ? i : n) + 1;
        if (slots < wanted && !growTo(wanted))
            return;
        for (int j = n; j > i; --j)
            data[j] = data[j - 1];
        data[i] = p;
        setCount(wanted);
    }
    /// Stores `p` at i; the count is at least i + 1 afterwards.
    void set(int i, T p)
    {
        if (i < 0 || i >= MAX_NUM || (i >= slots && !growTo(i + 1)))
            return;
        data[i] = p;
        if (getNum() < i + 1)
            setCount(i + 1);
    }

    /// Unordered removal: the last entry moves into the gap. The entry must exist.
    void remove(const T& p) { removeIndex(getIndex(p)); }
    void removeIndex(int i)
    {
        const int last = getNum() - 1;
        if (i >= 0 && i < last)
            data[i] = data[last];
        setCount(last);
    }
    bool checkRemove(const T& p) { return checkRemoveIndex(getIndex(p)); }
    bool checkRemoveIndex(int i)
    {
        if (!indexInRange(i))
            return false;
        removeIndex(i);
        return true;
    }

    /// Ordered removal: the entries behind move down by one. The entry must exist.
    void removeOrdered(const T& p) { removeOrderedIndex(getIndex(p)); }
    void removeOrderedIndex(int i)
    {
        const int n = getNum();
        if (n == 0)
            return;
        if (i >= 0 && i + 1 < n)
            std::memmove(static_cast<void*>(data + i), data + i + 1, std::size_t(n - i - 1) * sizeof(T));
        setCount(n - 1);
    }
    bool checkRemoveOrdered(const T& p) { return checkRemoveOrderedIndex(getIndex(p)); }
    bool checkRemoveOrderedIndex(int i)
    {
        if (!indexInRange(i))
            return false;
        removeOrderedIndex(i);
        return true;
    }

    /// The last entry, taken out. The list must not be empty.
    T removeLast()
    {
        const int last = getNum() - 1;
        setCount(last);
        return data[last];
    }
    /// As removeLast(); null for an empty list, whose count word goes wrong by one all the same: callers ask
    /// getNum() first.
    T checkRemoveLast()
    {
        const int n = getNum();
        setCount(n - 1);
        return n > 0 ? data[n - 1] : T{};
    }

    /// The last occurrence of `old` becomes `p`. It must exist; without one nothing changes.
    void replace(const T& old, T p) { checkReplace(old, p); }
    bool checkReplace(const T& old, T p)
    {
        const int i = getIndex(old);
        if (i >= 0)
            data[i] = p;
        return i >= 0;
    }

    /// Empties the list and keeps its storage.
    void reset() { setCount(0); }
    /// Exactly `n` slots for heap lists, at least `n` for arena lists; entries beyond are dropped. Below 1 the
    /// storage is given back.
    void setSize(int n)
    {
        if (n < 1)
        {
            tbListStorage::free(data, countWord);
            data = nullptr;
            slots = 0;
            setCount(0);
            return;
        }
        if (!isArenaList() || n > slots)
        {
            if (!reserve(n))
                return;
        }
        slots = n;
        if (getNum() > n)
            setCount(n);
    }

private:
    static constexpr int MAX_NUM = int(tbListStorage::COUNT_MASK);

    void setCount(int n)
    {
        countWord = (countWord & ~tbListStorage::COUNT_MASK) | (unsigned(n) & tbListStorage::COUNT_MASK);
    }
    bool growTo(int n)
    {
        if (n > MAX_NUM)
            return false;
        int wanted = slots == 0 ? (n > 2 ? n : 2) : slots;
        while (wanted < n)
            wanted *= 2;
        return wanted <= slots || reserve(wanted);
    }
    bool reserve(int n)
    {
        const int used = getNum() < n ? getNum() : n;
        void* block = tbListStorage::resize(data, used, n, countWord);
        if (!block)
            return false;
        data = static_cast<T*>(block);
        slots = n;
        return true;
    }

    T* data = nullptr;
    unsigned countWord = 0;
    int slots = 0;
};

// The list of untyped pointers.
class tbList : public tbTList<void*>
{
public:
    using tbTList<void*>::tbTList;
};
