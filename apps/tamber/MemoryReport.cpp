#include "MemoryReport.h"

#include "Table.h"

#include <portable/tbImageCarrier.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbTrait.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <tuple>

namespace
{
struct Kind
{
    std::string name;
    long long count = 0;
    std::size_t bytes = 0;
};

/// Blocks by address, each with its bytes.
using Blocks = std::map<const void*, std::size_t>;

/// Nodes and traits always lie in blocks of their own, whose size the allocator knows.
bool hasOwnBlocks(const tbType& type)
{
    return type.isOfType(tbGroup::getClassType()) || type.isOfType(tbTrait::getClassType());
}

Kind measure(const tbType& type)
{
    Kind kind{type.getName(), type.getNum(false), 0};
    for (int i = 0; i < kind.count; ++i)
        kind.bytes += tbMemory::getSize(type.get(i, false));
    return kind;
}

Kind sum(const char* name, const Blocks& blocks)
{
    Kind kind{name, static_cast<long long>(blocks.size()), 0};
    for (const auto& [address, bytes] : blocks)
        kind.bytes += bytes;
    return kind;
}

Kind measureVertices()
{
    Blocks blocks;
    for (int i = 0; i < tbGeometry::getNum(true); ++i)
        if (const tbVertexArray* vertices = tbGeometry::get(i, true)->getVertexArray())
            blocks[vertices] = vertices->getSize();
    return sum("vertex arrays", blocks);
}

Kind measureIndices()
{
    Blocks blocks;
    for (int i = 0; i < tbGeometry::getNum(true); ++i)
        if (const tbGeometry* geometry = tbGeometry::get(i, true); geometry->getIndices())
            blocks[geometry->getIndices()] = std::size_t(geometry->getNumIndices()) * sizeof(unsigned int);
    return sum("index arrays", blocks);
}

Kind measureImages()
{
    Blocks blocks;
    const tbType* traits = tbTrait::getClassType();
    for (int i = 0; i < traits->getNum(true); ++i)
        if (const tbImageCarrier* carrier = tbImageCarrier::of(traits->get(i, true));
            carrier && carrier->getImage())
            blocks[carrier->getImage()] = carrier->getImageSize();
    return sum("images", blocks);
}

std::vector<Kind> measureAll()
{
    std::vector<Kind> kinds;
    for (int i = 0; i < tbType::getNumTypes(); ++i)
        if (const tbType* type = tbType::getType(i); type && hasOwnBlocks(*type))
            kinds.push_back(measure(*type));
    kinds.push_back(measureVertices());
    kinds.push_back(measureIndices());
    kinds.push_back(measureImages());
    std::erase_if(kinds, [](const Kind& kind) { return kind.count == 0; });
    std::sort(kinds.begin(), kinds.end(),
              [](const Kind& a, const Kind& b)
              { return std::tie(b.bytes, a.name) < std::tie(a.bytes, b.name); });
    return kinds;
}
} // namespace

void printMemory(std::ostream& out)
{
    Table table({"memory by kind", "count", "bytes"});
    for (const Kind& kind : measureAll())
        table.addRow({kind.name, formatCount(kind.count), formatCount(static_cast<long long>(kind.bytes))});
    table.addRow(
        {"everything the library holds", "", formatCount(static_cast<long long>(tbMemory::getSize()))});
    table.print(out);
}
