// Where the entries' bytes lie, and what lies between them.
#include "CheckState.h"

#include <algorithm>

namespace native
{

namespace
{

constexpr std::size_t PIECE = 64 * 1024;

/// Where the first byte of a region is that is not zero; the region's end when there is none.
std::uint64_t findContent(Image& image, const Region& region)
{
    std::vector<unsigned char> bytes;
    for (std::uint64_t offset = region.offset; offset < region.end(); offset += PIECE)
    {
        if (!image.readRegion({offset, std::min<std::uint64_t>(PIECE, region.end() - offset)}, bytes))
            break;
        const auto found =
            std::find_if(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte != 0; });
        if (found != bytes.end())
            return offset + std::uint64_t(found - bytes.begin());
    }
    return region.end();
}

void checkOverlaps(CheckState& state)
{
    const std::vector<Region>& stored = state.image.getStored();
    int furthest = NO_ENTRY; // the entry that ends last of those before
    for (const int entry : state.image.orderByOffset())
    {
        const Region& region = stored[std::size_t(entry)];
        if (region.size == 0)
            continue;
        const std::uint64_t covered = furthest == NO_ENTRY ? 0 : stored[std::size_t(furthest)].end();
        if (region.offset < covered && !state.findings.countOnly(Kind::DATA_OVERLAP))
            state.findings.add(state.image.makeFinding(Kind::DATA_OVERLAP, entry, region.offset,
                                                       "with entry " + std::to_string(furthest)));
        if (region.end() > covered)
            furthest = entry;
    }
}

void checkSequence(CheckState& state)
{
    const std::vector<Region>& stored = state.image.getStored();
    std::uint64_t last = 0;
    for (int entry = 0; entry < state.image.getNumEntries(); ++entry)
    {
        const Region& region = stored[std::size_t(entry)];
        if (region.size == 0)
            continue;
        if (region.offset < last)
            state.findings.add(state.image.makeFinding(Kind::DATA_ORDER, entry, region.offset));
        last = region.offset;
    }
}

void checkGap(CheckState& state)
{
    const Image& image = state.image;
    const Region& gap = image.getGap();
    const std::uint64_t start = image.getTablesEnd();
    const std::uint64_t reserved = start + std::uint64_t(layout::RECORD_GAP) * image.getHeader().numEntries;
    for (int entry = 0; entry < image.getNumEntries(); ++entry)
    {
        const Region& region = state.image.getStored(entry);
        if (region.size > 0 && region.offset < reserved)
            state.findings.add(image.makeFinding(Kind::DATA_IN_GAP, entry, region.offset));
    }
    const std::uint64_t content = findContent(state.image, gap);
    if (content < gap.end())
        state.add(Kind::GAP_NOT_ZERO, content);
}

void checkLeftovers(CheckState& state)
{
    const std::uint64_t length = state.image.getLength();
    for (const Region& region : state.image.findLeftovers())
        state.add(region.end() == length ? Kind::TRAILING : Kind::LEFTOVER, region.offset,
                  std::to_string(region.size) + " bytes" +
                      (findContent(state.image, region) == region.end() ? ", all zero" : ""));
}

} // namespace

void checkPlaces(CheckState& state)
{
    checkSequence(state);
    checkOverlaps(state);
    checkGap(state);
    checkLeftovers(state);
}

} // namespace native
