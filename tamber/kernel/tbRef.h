#pragma once

#include <cstddef>
#include <utility>

// Holds one reference on an object. The new reference is taken before the old one is dropped.
template <class T>
class tbRef
{
public:
    constexpr tbRef() noexcept = default;
    constexpr tbRef(std::nullptr_t) noexcept {}
    tbRef(T* object) : held(object)
    {
        if (held)
            held->ref();
    }
    tbRef(const tbRef& other) : tbRef(other.held) {}
    tbRef(tbRef&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    ~tbRef() { reset(); }

    tbRef& operator=(T* object)
    {
        if (object)
            object->ref();
        if (T* old = std::exchange(held, object))
            old->unRef();
        return *this;
    }
    tbRef& operator=(const tbRef& other) { return *this = other.held; }
    tbRef& operator=(tbRef&& other) noexcept
    {
        // Taken first: the object that is let go may be the one that `other` is a part of.
        T* taken = std::exchange(other.held, nullptr);
        if (T* old = std::exchange(held, taken))
            old->unRef();
        return *this;
    }

    void reset()
    {
        if (T* old = std::exchange(held, nullptr))
            old->unRef();
    }

    T* get() const noexcept { return held; }
    T* operator->() const noexcept { return held; }
    T& operator*() const noexcept { return *held; }
    explicit operator bool() const noexcept { return held != nullptr; }
    bool operator==(const tbRef& other) const noexcept { return held == other.held; }
    bool operator==(const T* other) const noexcept { return held == other; }

private:
    T* held = nullptr;
};
