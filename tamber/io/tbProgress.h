#pragma once

/// Hears how much of a long work is done, 0 to 1, on the thread that does it.
using tbProgressFunc = void (*)(double done);
