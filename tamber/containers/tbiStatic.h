#pragma once

// A library-wide value that is ready before any static constructor runs and that no static destructor touches:
// the kernel's load-time object releases it in the order that it states. Works as the value's pointer.
template <class T>
class tbiStatic
{
public:
    constexpr tbiStatic() : value() {}
    ~tbiStatic() {} // NOLINT(modernize-use-equals-default): a defaulted one would be deleted

    T* operator->() { return &value; }
    T& operator*() { return value; }

private:
    union
    {
        T value;
    };
};
