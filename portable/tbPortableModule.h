#pragma once

#include <portable/tbPortableApi.h>

class tbPlugIn;

// A module that is linked to this one brings it into the process, and takes it away again when it is unloaded,
// whatever still lives. Such a module therefore names itself a user: it counts as referenced while any object of
// this module's classes lives.

/// Called by a module's record when it is constructed. Takes no reference on `user` by itself.
TB_PORTABLE_API void tbPortableAddUser(tbPlugIn* user);
/// Called before the record goes.
TB_PORTABLE_API void tbPortableRemoveUser(tbPlugIn* user);
