#pragma once

/// Gives back the storage of the node types' registry and of the deep copies' lists when the library is unloaded.
/// The lists work on, empty.
void tbiReleaseGraphLists();
