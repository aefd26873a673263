#pragma once

#include <string>

// Where names lead to. Names may use either separator.

/// The absolute path that `name` spells, "." and ".." worked off by the text alone: no medium and no other machine is
/// asked. Empty when it spells what is no place of a file: a device, a stream of a file (Windows), nothing at all.
std::string tbiSpelledPlace(const char* name);
/// The absolute path of the existing file or directory that `name` leads to, every link followed; empty when there is
/// none.
std::string tbiFinalPlace(const char* name);
/// True when `place` is `directory` or lies in it or below it. Both are of one of the two kinds above.
bool tbiIsPlaceBelow(const std::string& place, const std::string& directory);
