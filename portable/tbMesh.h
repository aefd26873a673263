#pragma once

#include <portable/tbPortableApi.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbSphere.h>

#include <atomic>

class tbiMeshTree;
class tbiSharedBlock;

// Points, lines or triangles over a shared vertex array. With indices, every index names a vertex of the array;
// without, the vertices are used in their own order. The bounds of the vertices in use are kept and take part in
// the bounds pass.
//
// Whoever changes the vertices of the array in place, or their number, calls changed() on every mesh that uses it.
class TB_PORTABLE_API tbMesh : public tbGeometry
{
    TB_CLASS(tbMesh, tbGeometry)

public:
    enum PRIMITIVE : std::int32_t
    {
        POINTS = 0,
        LINES = 1,    ///< two vertices each
        TRIANGLES = 2 ///< three vertices each, counter-clockwise seen from the front
    };

    tbMesh();
    /// Shares vertices and indices with `other`.
    tbMesh(const tbMesh& other);
    tbMesh& operator=(const tbMesh& other);

    /// Replaces everything that is drawn. `vertices` may be null and is referenced; `indexData` holds `numIndices`
    /// indices and is copied. False, and nothing changed, when the primitive is none of the three, a count is
    /// negative or no multiple of the primitive's vertices, an index is beyond the vertices, or memory is out.
    bool set(PRIMITIVE primitive, tbVertexArray* vertices, const unsigned int* indexData, int numIndices);
    /// As set() with the present vertices.
    bool setIndices(PRIMITIVE primitive, const unsigned int* indexData, int numIndices);
    /// As set() with the present primitives and indices.
    bool setVertexArray(tbVertexArray* vertices);
    /// The vertices have changed in place: takes their bounds again and marks the graph. When vertices that indices
    /// name are gone, the mesh lets vertices and indices go and draws nothing until it is set again.
    void changed();

    PRIMITIVE getPrimitive() const { return primitive; }
    tbVertexArray* getVertexArray() { return vertexArray; }
    /// Both are empty while no vertex is in use. In this node's coordinates.
    const tbSphere& getBoundingSphere() const { return sphere; }
    const tbBox& getBoundingBox() const { return box; }
    /// How far from a ray lines and points are still hit, in this node's units; 0 at first.
    void setHitTolerance(float distance);
    float getHitTolerance() const { return hitTolerance; }
    /// Bytes of the indices; meshes that share them all report them.
    std::size_t getIndexSize() const;
    static constexpr int verticesOf(PRIMITIVE primitive) { return int(primitive) + 1; }

    const tbVertexArray* getVertexArray() const override { return vertexArray; }
    int getNumPrimitives() const override;
    int getNumIndices() const override;
    const unsigned int* getIndices() const override;

    tbBase* createCopy() const override;
    /// Fails when a count does not fit the entry or an index is beyond the vertices.
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Extends the volume on the top of the context's volume stack around this mesh.
    void updateFences(tbTravContext* context) override;
    using tbGeometry::apply;
    /// Tests the collider's rays against the primitives. The integers of a hit are the primitive's number and its
    /// first vertex.
    void apply(tbCollider* collider) const override;

protected:
    ~tbMesh() override;

    /// With vertices of its own.
    tbGroup* copyGroup() const override;
    /// Shares vertices and indices.
    tbGroup* cloneGroup() const override;

private:
    void share(const tbMesh& other);
    static bool isWhole(PRIMITIVE kind, const tbVertexArray* vertices, const unsigned int* indexData,
                        int numIndices);
    void take(PRIMITIVE kind, tbVertexArray* vertices, tbiSharedBlock* block);
    void replaceVertices(tbVertexArray* vertices);
    void replaceIndices(tbiSharedBlock* block);
    void takeBounds();
    void updateBounds();
    const tbiMeshTree* getTree() const;
    void dropTree();
    void getCorners(int i, tbVec3* corners) const;
    void collideRay(tbCollider* collider, int i) const;
    void report(tbCollider* collider, int ray, int hitPrimitive, const tbVec3& point, float distance) const;

    PRIMITIVE primitive = TRIANGLES;
    tbVertexArray* vertexArray = nullptr;
    tbiSharedBlock* indices = nullptr;
    tbSphere sphere;
    tbBox box;
    float hitTolerance = 0.0f;
    mutable std::atomic<const tbiMeshTree*> tree{nullptr}; // built by the first ray
};
