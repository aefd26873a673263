#pragma once

#include <tamber/kernel/tbTypes.h>

// The classes whose objects may be native files of their own, and the extensions of these.
namespace tbiFileTypes
{

/// False, and nothing done, when type or extension (case ignored) is known already.
bool add(const tbType* type, const char* extension);
int getNum();
/// The extension; null when out of range.
const char* get(int i);
/// The extension of the first class that the object is of; null when there is none.
const char* extensionFor(const tbBase& object);
/// Drops a class that goes.
void forget(const tbType* type);
void release();

} // namespace tbiFileTypes
