// Basic types that every header of the kernel shares.
#pragma once

#include <tamber/platform/tbPlatform.h>

#include <cstddef>
#include <cstdint>

class tbArena;
class tbBase;
class tbEntry;
class tbFile;
class tbPlugIn;
class tbType;
