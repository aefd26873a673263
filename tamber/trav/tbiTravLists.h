#pragma once

/// Gives back the storage of the three lists of trait types when the library is unloaded. Types that still live
/// leave the empty lists in peace.
void tbiReleaseTravLists();
