#pragma once

/// Makes the calling thread the application thread; done once, when the library is loaded.
void tbiAdoptAppThread();
/// Remembers the calling thread as the one that tbInAppThread() means.
void tbiRecordAppThread();
/// Flushes the downstream threads, handles what the application's queue still holds and lets the thread object go.
/// Does nothing when it is gone already.
void tbiReleaseAppThread();
/// Number of texture units from the settings, else 1.
void tbiReadNumTextureUnits();
