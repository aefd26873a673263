#pragma once

/// Frees the table and goes over to the exact method; done when the library is unloaded.
void tbiFreeSqrtTable();
