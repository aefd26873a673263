#pragma once

/// Gives back the list of render contexts. Contexts that still live stay alive and are listed no more.
void tbiReleaseDisplayLists();
