#pragma once

#include <tamber/kernel/tbiMemoryWatch.h>

/// A new object, which nobody holds yet, or null when memory ran out since `memory` began: the object is let go then,
/// because a part of it may be missing.
template <class Object>
Object* tbiWhole(Object* object, const tbiMemoryWatch& memory)
{
    if (!object || !memory.ranOut())
        return object;
    object->unRef();
    return nullptr;
}

/// A copy of the exact class `Object`; null when memory is out.
template <class Object>
Object* tbiCopyOf(const Object& object)
{
    const tbiMemoryWatch memory;
    return tbiWhole(new Object(object), memory);
}
