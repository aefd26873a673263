#pragma once

#include <tamber/containers/tbGrowableArray.h>

class tbUByteVec3;
class tbUByteVec4;
class tbVec2;
class tbVec3;
class tbVec4;

// Which element type of tbArray a C++ type is.
template <class T>
struct tbiDataType;
template <>
struct tbiDataType<short>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::SHORT;
};
template <>
struct tbiDataType<tbUByteVec3>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::UBYTE_VEC3;
};
template <>
struct tbiDataType<tbUByteVec4>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::UBYTE_VEC4;
};
template <>
struct tbiDataType<int>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::INT;
};
template <>
struct tbiDataType<float>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::FLOAT;
};
template <>
struct tbiDataType<tbVec2>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::VEC2;
};
template <>
struct tbiDataType<tbVec3>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::VEC3;
};
template <>
struct tbiDataType<tbVec4>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::VEC4;
};
template <>
struct tbiDataType<double>
{
    static constexpr tbArray::DATA_TYPE value = tbArray::DOUBLE;
};

// The typed face of a growable array, for the nine element types.
template <class T>
class tbTArray : public tbGrowableArray
{
public:
    tbTArray() : tbGrowableArray(tbiDataType<T>::value) {}
    /// Storage for `capacity` elements, none of them in use.
    explicit tbTArray(int capacity) : tbGrowableArray(capacity, tbiDataType<T>::value) {}
    tbTArray(const tbTArray& other) : tbGrowableArray(other) { setUsed(other.getNum()); }
    tbTArray& operator=(const tbTArray& other) = default;

    T* getData() { return static_cast<T*>(tbArray::getData()); }
    const T* getData() const { return static_cast<const T*>(tbArray::getData()); }
    T& operator[](int i) { return getData()[i]; }
    const T& operator[](int i) const { return getData()[i]; }
    T* begin() { return getData(); }
    T* end() { return getData() + getNum(); }
    const T* begin() const { return getData(); }
    const T* end() const { return getData() + getNum(); }

    /// Appends and returns the new element's index; -1 when memory is out.
    int add(const T& value)
    {
        const T copy = value; // it may stand in the storage that moves
        const int n = getNum();
        if (n >= getCapacity())
            grow(n < 4 ? 8 : n * 2);
        if (n >= getCapacity())
            return -1;
        setUsed(n + 1);
        getData()[n] = copy;
        return n;
    }
    /// Uses the first `n` elements; new ones are zero. False when memory is out.
    bool setNum(int n)
    {
        if (n > getCapacity())
            grow(n);
        if (n < 0 || n > getCapacity())
            return false;
        setUsed(n);
        return true;
    }
};
