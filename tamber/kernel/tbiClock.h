#pragma once

/// Takes the moment that tbGetTime() counts from; done once, when the library is loaded.
void tbiStartClock();
