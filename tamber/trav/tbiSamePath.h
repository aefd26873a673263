#pragma once

/// Compares two paths, live or stored. Codes and counts tell most of them apart; the groups are compared from the
/// deepest one back, because two paths in one graph most often differ near the leaf.
template <class Path, class OtherPath>
bool tbiSamePath(const Path& a, const OtherPath& b)
{
    if (a.getID() != b.getID() || a.getNum() != b.getNum())
        return false;
    for (int i = a.getNum() - 1; i >= 0; --i)
        if (a.get(i) != b.get(i))
            return false;
    return true;
}
