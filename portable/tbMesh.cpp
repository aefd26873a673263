#include "tbMesh.h"

#include <tamber/io/tbFile.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbTravContext.h>

#include "tbiSharedBlock.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

TB_DEFINE_NODE_CLASS(tbMesh, tbGeometry)

namespace
{
constexpr std::size_t INDEX_SIZE = sizeof(unsigned int);

bool areIndicesBelow(const unsigned int* indices, int count, int numVertices)
{
    return std::all_of(indices, indices + count,
                       [numVertices](unsigned int index) { return index < unsigned(numVertices); });
}

int countVertices(const tbVertexArray* vertices)
{
    return vertices ? vertices->getNum() : 0;
}

/// The positions in use: those that are named by an index, or all when there are no indices.
class PositionsInUse
{
public:
    PositionsInUse(const tbVertexArray& array, const unsigned int* indexData, int numIndices)
        : vertices(array),
          indices(indexData),
          count(indexData ? numIndices : array.getNum())
    {
        markNamed();
    }
    PositionsInUse(const PositionsInUse&) = delete;
    PositionsInUse& operator=(const PositionsInUse&) = delete;
    ~PositionsInUse() { tbMemory::free(named); }

    /// Positions that are not finite have no place in any bounds and are passed over.
    template <class Visit>
    void forEach(Visit visit) const
    {
        const auto* data = static_cast<const unsigned char*>(vertices.getData());
        const auto stride = std::size_t(vertices.getVertexSize());
        for (int i = 0; i < count; ++i)
        {
            if (named && !named[i])
                continue;
            float xyz[3];
            std::memcpy(xyz, data + (indices ? indices[i] : unsigned(i)) * stride, sizeof(xyz));
            if (std::isfinite(xyz[0]) && std::isfinite(xyz[1]) && std::isfinite(xyz[2]))
                visit(tbVec3(xyz[0], xyz[1], xyz[2]));
        }
    }

private:
    /// Triangles that meet name a vertex over and over. Once is enough, where there is memory to know it.
    void markNamed()
    {
        if (!indices || count <= vertices.getNum())
            return;
        named = static_cast<unsigned char*>(tbMemory::calloc(std::size_t(vertices.getNum()), 1));
        if (!named)
            return;
        for (int i = 0; i < count; ++i)
            named[indices[i]] = 1;
        indices = nullptr;
        count = vertices.getNum();
    }

    const tbVertexArray& vertices;
    const unsigned int* indices; // null when what they name is marked
    int count;
    unsigned char* named = nullptr;
};
} // namespace

tbMesh::tbMesh()
{
    initInstance();
}

tbMesh::tbMesh(const tbMesh& other) : tbGeometry(other)
{
    initInstance();
    share(other);
}

tbMesh& tbMesh::operator=(const tbMesh& other)
{
    if (this == &other)
        return *this;
    tbGeometry::operator=(other);
    share(other);
    dirtyUp(TF_GEOMETRY | TF_FENCE);
    return *this;
}

tbMesh::~tbMesh()
{
    deleteInstance();
    replaceVertices(nullptr);
    replaceIndices(nullptr);
}

bool tbMesh::set(PRIMITIVE kind, tbVertexArray* vertices, const unsigned int* indexData, int numIndices)
{
    if (!isWhole(kind, vertices, indexData, numIndices))
        return false;
    tbiSharedBlock* block = nullptr;
    if (numIndices > 0 && !(block = tbiSharedBlock::create(indexData, std::size_t(numIndices) * INDEX_SIZE)))
        return false;
    take(kind, vertices, block);
    return true;
}

bool tbMesh::isWhole(PRIMITIVE kind, const tbVertexArray* vertices, const unsigned int* indexData,
                     int numIndices)
{
    if (kind < POINTS || kind > TRIANGLES || numIndices < 0 || numIndices % verticesOf(kind) != 0)
        return false;
    return numIndices == 0 || (indexData && areIndicesBelow(indexData, numIndices, countVertices(vertices)));
}

/// Takes over the caller's reference on `block`, which may be null.
void tbMesh::take(PRIMITIVE kind, tbVertexArray* vertices, tbiSharedBlock* block)
{
    primitive = kind;
    replaceVertices(vertices);
    replaceIndices(block);
    takeBounds();
}

bool tbMesh::setIndices(PRIMITIVE kind, const unsigned int* indexData, int numIndices)
{
    return set(kind, vertexArray, indexData, numIndices);
}

bool tbMesh::setVertexArray(tbVertexArray* vertices)
{
    if (indices && !areIndicesBelow(getIndices(), getNumIndices(), countVertices(vertices)))
        return false;
    replaceVertices(vertices);
    takeBounds();
    return true;
}

void tbMesh::changed()
{
    if (indices && !areIndicesBelow(getIndices(), getNumIndices(), countVertices(vertexArray)))
    {
        replaceVertices(nullptr);
        replaceIndices(nullptr);
    }
    takeBounds();
}

void tbMesh::takeBounds()
{
    updateBounds();
    dirtyUp(TF_GEOMETRY | TF_FENCE);
}

std::size_t tbMesh::getIndexSize() const
{
    return indices ? indices->getSize() : 0;
}

int tbMesh::getNumPrimitives() const
{
    return (indices ? getNumIndices() : countVertices(vertexArray)) / verticesOf(primitive);
}

int tbMesh::getNumIndices() const
{
    return int(getIndexSize() / INDEX_SIZE);
}

const unsigned int* tbMesh::getIndices() const
{
    return indices ? static_cast<const unsigned int*>(indices->getData()) : nullptr;
}

tbBase* tbMesh::createCopy() const
{
    return new tbMesh(*this);
}

tbGroup* tbMesh::copyGroup() const
{
    auto* made = new tbMesh;
    if (!made)
        return nullptr;
    addGroupMapping(this, made);
    made->share(*this);
    if (vertexArray)
        made->replaceVertices(new tbVertexArray(*vertexArray));
    if (indices)
        made->replaceIndices(tbiSharedBlock::create(indices->getData(), indices->getSize()));
    made->copy(*this);
    return made;
}

tbGroup* tbMesh::cloneGroup() const
{
    auto* made = new tbMesh;
    if (!made)
        return nullptr;
    addGroupMapping(this, made);
    made->share(*this);
    made->clone(*this);
    return made;
}

tbEntry* tbMesh::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGeometry::write(file, entry);
    tbEntry* target = entry ? entry : created;
    if (!target)
        return nullptr;
    target->writeInt(primitive);
    if (vertexArray)
        vertexArray->writeRef(file, target);
    else
        target->writeInt(-1);
    target->writeInt(getNumIndices());
    static_assert(sizeof(int) == INDEX_SIZE);
    if (indices)
        target->writeInts(static_cast<const int*>(indices->getData()), getNumIndices());
    return created;
}

tbEntry* tbMesh::read(tbFile* file, tbEntry* entry)
{
    entry = tbGeometry::read(file, entry);
    if (!entry)
        return nullptr;
    const auto kind = PRIMITIVE(entry->readInt());
    tbVertexArray* vertices = tbVertexArray::readRef(file, entry);
    const int count = entry->readCount(int(INDEX_SIZE));
    if (entry->hasFailed())
        return nullptr;
    tbiSharedBlock* block = nullptr;
    if (count > 0 && !(block = tbiSharedBlock::createEmpty(std::size_t(count) * INDEX_SIZE)))
        return nullptr;
    auto* indexData = block ? static_cast<unsigned int*>(block->getOwnData()) : nullptr;
    entry->readInts(reinterpret_cast<int*>(indexData), count);
    if (!isWhole(kind, vertices, indexData, count))
    {
        if (block)
            block->unRef();
        entry->fail("indices name vertices of the mesh, in whole primitives");
        return nullptr;
    }
    // The flags that were read stand: a mesh from a file is not changed.
    const unsigned readFlags = getTravFlags();
    take(kind, vertices, block);
    setTravFlags(readFlags);
    return entry;
}

void tbMesh::updateFences(tbTravContext* context)
{
    tbGeometry::updateFences(context);
    tbVolume* volume = context->getVolume();
    if (!volume || sphere.isEmpty())
        return;
    if (volume->getType() == tbVolume::BOX)
    {
        tbBox placed;
        placed.xform(box, context->getMatrix());
        volume->extendAround(placed);
    }
    else
    {
        tbSphere placed;
        placed.xform(sphere, context->getMatrix());
        volume->extendAround(placed);
    }
}

void tbMesh::share(const tbMesh& other)
{
    primitive = other.primitive;
    hitTolerance = other.hitTolerance;
    replaceVertices(other.vertexArray);
    if (other.indices)
        other.indices->ref();
    replaceIndices(other.indices);
    sphere = other.sphere;
    box = other.box;
}

void tbMesh::replaceVertices(tbVertexArray* vertices)
{
    dropTree();
    if (vertices)
        vertices->ref();
    if (tbVertexArray* old = std::exchange(vertexArray, vertices))
        old->unRef();
}

/// Takes over the caller's reference on `block`.
void tbMesh::replaceIndices(tbiSharedBlock* block)
{
    dropTree();
    if (tbiSharedBlock* old = std::exchange(indices, block))
        old->unRef();
}

void tbMesh::updateBounds()
{
    dropTree();
    box.makeEmpty();
    sphere.makeEmpty();
    if (!vertexArray)
        return;
    const PositionsInUse positions(*vertexArray, getIndices(), getNumIndices());
    positions.forEach([this](const tbVec3& p) { box.extendAround(p); });
    if (box.isEmpty())
        return;
    tbVec3 center;
    box.getCenter(center);
    float sqrRadius = 0.0f;
    positions.forEach([&](const tbVec3& p) { sqrRadius = std::max(sqrRadius, center.sqrDistance(p)); });
    sphere = tbSphere(center, std::sqrt(sqrRadius));
}
