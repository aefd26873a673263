#pragma once

/// Part of tbiReleaseGraphLists().
void tbiReleaseCopyLists();
