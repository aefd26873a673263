#pragma once

// Each gives back the storage of one subject's library-wide lists when the library is unloaded. The lists work on,
// empty, should an object outlive the library's clean-up.

void tbiReleaseArenaLists();
/// Deletes every type that is left.
void tbiReleaseTypeLists();
void tbiReserveTypeLists();
