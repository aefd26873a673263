#pragma once

#include <tamber/volume/tbPlane.h>

// The view volume of a camera: what lies inside six planes. In its own frame it looks along +Y from the origin, X to
// the right, Z up. Twelve more planes, one through each edge, sharpen the tests near the edges.
class TB_API tbFrustum : public tbVolume
{
public:
    using tbVolume::contains;
    using tbVolume::extendAround;
    using tbVolume::intersects;

    enum FACE : int
    {
        FACE_NEAR = 0,
        FACE_FAR = 1,
        FACE_LEFT = 2,
        FACE_RIGHT = 3,
        FACE_BOTTOM = 4,
        FACE_TOP = 5
    };
    enum EDGE : int
    {
        EDGE_LEFT_TOP = 0,
        EDGE_RIGHT_TOP = 1,
        EDGE_LEFT_BOTTOM = 2,
        EDGE_RIGHT_BOTTOM = 3,
        EDGE_NEAR_TOP = 4,
        EDGE_NEAR_BOTTOM = 5,
        EDGE_NEAR_RIGHT = 6,
        EDGE_NEAR_LEFT = 7,
        EDGE_FAR_TOP = 8,
        EDGE_FAR_BOTTOM = 9,
        EDGE_FAR_RIGHT = 10,
        EDGE_FAR_LEFT = 11
    };
    /// Index of a corner: the sum of what it is of.
    enum CORNER : int
    {
        CORNER_RIGHT = 1, // otherwise left
        CORNER_TOP = 2,   // otherwise bottom
        CORNER_FAR = 4    // otherwise near
    };
    static constexpr int NUM_FACES = 6;
    static constexpr int NUM_EDGES = 12;
    static constexpr int NUM_CORNERS = 8;

    /// Empty.
    tbFrustum();
    tbFrustum(const tbFrustum& other);
    /// A copy that lives in an arena. A frustum owns nothing, so nothing is taken from it.
    tbFrustum(const tbFrustum& other, tbArena* arena);
    tbFrustum& operator=(const tbFrustum& other);

    /// Planes and corners in the frame that the frustum was carried to; not range checked. The normals point out.
    const tbPlane& getFacePlane(int face) const { return faces[face]; }
    const tbPlane& getEdgePlane(int edge) const { return edges[edge]; }
    /// Eight points.
    const tbVec3* getCorners() const { return corners; }
    /// Distances and extents of the near rectangle as the frustum was made; carrying it does not change them.
    float getNear() const { return nearDist; }
    float getFar() const { return farDist; }
    float getLeft() const { return left; }
    float getRight() const { return right; }
    float getBottom() const { return bottom; }
    float getTop() const { return top; }
    bool isSymmetrical() const;

    bool operator==(const tbFrustum& other) const;
    bool operator!=(const tbFrustum& other) const { return !(*this == other); }

    void copy(const tbVolume& other) override;
    tbFrustum* createCopy() const override;
    tbFrustum* createDisposableCopy(tbArena* arena) const override;
    void xform(const tbMatrix& m) override;
    /// Extents of 0; planes and corners stay.
    void makeEmpty() override;
    bool isEmpty() const override { return left == right; }
    CONTAINMENT contains(const tbVec3& point) const override;
    CONTAINMENT contains(const tbRay& ray) const override;
    /// OUTSIDE only when a face of one of them separates the two.
    CONTAINMENT contains(const tbFrustum& frustum) const override;
    /// What straddles a face without its edges settling the question counts as inside, on purpose: culling stops
    /// testing below what it takes for inside, and drawing clips the rest. So for boxes.
    CONTAINMENT contains(const tbSphere& sphere) const override;
    CONTAINMENT contains(const tbBox& box) const override;
    /// A frustum holds no half-space whole.
    CONTAINMENT contains(const tbPlane& plane) const override;
    bool intersects(const tbFrustum& frustum) const override;
    bool intersects(const tbSphere& sphere) const override;
    bool intersects(const tbBox& box) const override;
    bool intersects(const tbPlane& plane) const override;
    bool intersects(const tbRay& ray) const override;
    /// The faces move outward, each until it lies beyond what is to be enclosed; corners and edges follow, extents
    /// and distances stay as the frustum was made. An empty frustum becomes the orthographic one around the bounds,
    /// and stays empty when these have no width along X.
    void extendAround(const tbVec3& point) override;
    void extendAround(const tbVec3* points, int count) override;
    void extendAround(const tbSphere& sphere) override;
    void extendAround(const tbBox& box) override;
    /// The middle between the near left top corner and the far right bottom one.
    void getCenter(tbVec3& center) const override;
    /// Distances are those of the near and the far plane from the origin.
    void read(tbEntry* entry) override;
    void write(tbEntry* entry) const override;

    /// The extents are those of the near rectangle, at the near distance, which is above 0.
    virtual void makePersp(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                           float newFar);
    virtual void makeOrtho(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                           float newFar);
    /// Opening angles in degrees.
    virtual void makeFOV(float horizontal, float vertical, float newNear, float newFar);
    /// this = `source` carried by `m`. The extents stay those of the frame that it was made in.
    virtual void xform(const tbFrustum& source, const tbMatrix& m);

private:
    template <class Volume>
    CONTAINMENT containsVolume(const Volume& volume) const;
    void setExtents(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                    float newFar);
    void setCorners(float farScale);
    void cornersFromFaces();
    void makeEdges();
    /// Moves the faces beyond `count` points that have a margin around them.
    void enclose(const tbVec3* points, int count, float margin);

    tbPlane faces[NUM_FACES];
    tbPlane edges[NUM_EDGES];
    tbVec3 corners[NUM_CORNERS];
    float left;
    float right;
    float bottom;
    float top;
    float nearDist;
    float farDist;
};
