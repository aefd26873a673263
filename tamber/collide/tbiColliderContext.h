#pragma once

/// Lets go of the traversal context that all colliders share; done when the library is unloaded.
void tbiReleaseColliderContext();
