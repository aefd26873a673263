#pragma once

#include <iosfwd>

/// Prints what lives at this moment, by kind of object: how many, and the bytes where they are known. Data that
/// several objects share counts once.
void printMemory(std::ostream& out);
