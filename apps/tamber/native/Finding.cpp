#include "Finding.h"

#include <algorithm>
#include <cstdio>
#include <tuple>
#include <utility>

namespace native
{

void Findings::countOne(Kind kind)
{
    const KindInfo& info = infoOf(kind);
    ++bySeverity[unsigned(info.severity)];
    if (byKind.empty())
        byKind.resize(allKinds().size());
    ++byKind[std::size_t(&info - allKinds().data())];
}

void Findings::add(Finding finding)
{
    countOne(finding.kind);
    if (kept.size() < limit)
        kept.push_back(std::move(finding));
}

bool Findings::countOnly(Kind kind)
{
    if (kept.size() < limit)
        return false;
    countOne(kind);
    return true;
}

void Findings::sort()
{
    std::stable_sort(kept.begin(), kept.end(),
                     [](const Finding& a, const Finding& b)
                     { return std::tie(a.entry, a.offset, a.kind) < std::tie(b.entry, b.offset, b.kind); });
}

std::uint64_t Findings::count(Kind kind) const
{
    return byKind.empty() ? 0 : byKind[std::size_t(&infoOf(kind) - allKinds().data())];
}

const KindInfo& infoOf(Kind kind)
{
    const auto kinds = allKinds();
    return *std::lower_bound(kinds.begin(), kinds.end(), kind,
                             [](const KindInfo& info, Kind wanted) { return info.kind < wanted; });
}

const char* nameOf(Severity severity)
{
    constexpr const char* NAMES[] = {"note", "warning", "error"};
    return NAMES[unsigned(severity)];
}

std::string printable(std::string_view text)
{
    std::string out;
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F)
        {
            out += c;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", unsigned(byte));
        out += escape;
    }
    return out;
}

} // namespace native
