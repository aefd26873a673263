#pragma once

#include <plugins/null/tbNullApi.h>
#include <plugins/null/tbNullCounts.h>
#include <tamber/display/tbCamera.h>
#include <tamber/volume/tbFrustum.h>

#include <initializer_list>

class tbGeometry;
struct tbiProjection;

// A camera that walks a graph as a drawing one does and counts instead of drawing. It needs an open window for a
// projection: what setFOV() and the make...ProjMatrix() operations asked for without one is taken up when there is
// one. Nodes are counted by the statistics of its context, when the program sets some there.
class TB_NULL_API tbNullCamera : public tbCamera, public tbNullCounter
{
    TB_CLASS(tbNullCamera, tbCamera)

public:
    tbNullCamera();
    tbNullCamera(const tbNullCamera& other);
    tbNullCamera& operator=(const tbNullCamera& other);

    void updateScreenMatrices() override;
    const tbFrustum* getFrustum() const override { return &frustum; }
    /// Any node may be the root; a scene also makes its direct calls. Nothing is acquired: the caller holds the
    /// scene for query.
    void draw(tbGroup* root) override;
    /// Angles are kept between 0.01 and 179 degrees.
    void setFOV(float horizontal, float vertical) override;
    void getFOV(float& horizontal, float& vertical) const override;
    void setWindow(tbWindow* newWindow) override;
    void applyViewport() override;
    /// A projection made by setFOV() follows.
    void setNearFar(float nearDist, float farDist) override;
    void clear() override;
    void setProjectionMatrix(const tbMatrix& matrix) override;
    /// The near and far distances become the given ones.
    void makeOrthoProjMatrix(float left, float right, float bottom, float top, float nearDist,
                             float farDist) override;
    void makePerspProjMatrix(float left, float right, float bottom, float top, float nearDist,
                             float farDist) override;
    void loadMatrices() override;
    void loadModelMatrix(const tbMatrix& matrix) override;
    void setAppliedVisualTrait(const tbVisualTrait* trait) override;

    tbBase* createCopy() const override;
    const tbNullCounts& getCounts() const override;
    void resetCounts() override;

    /// What the drawing hook does for this camera: applies the traits in force and counts the geometry.
    void drawGeometry(const tbGeometry* geometry);

protected:
    ~tbNullCamera() override;

private:
    // A frustum that counts the spheres that it is asked for.
    class CountingFrustum : public tbFrustum
    {
    public:
        using tbFrustum::contains;
        CONTAINMENT contains(const tbSphere& sphere) const override;

        mutable std::int64_t tests = 0;
        mutable std::int64_t culled = 0;
    };

    // The projection that the program last asked for.
    enum REQUEST : int
    {
        REQUEST_MATRIX, // a matrix of its own, which has been taken
        REQUEST_FOV,    // two angles
        REQUEST_PERSP,  // six bounds
        REQUEST_ORTHO   // six bounds
    };

    tbRenderContext* getDevice() const;
    void request(REQUEST kind, std::initializer_list<float> values);
    void carryOutRequest();
    void makeProjection(const tbiProjection& bounds);
    void takeProjection(const tbiProjection& bounds);
    void takeTraitStack(tbTravContext* walk);
    void popTraits(tbTravContext* walk);

    tbFrustum eyeFrustum;    // in the camera's frame
    CountingFrustum frustum; // in rendering space
    float horizontalFOV = 0.0f;
    float verticalFOV = 0.0f;
    REQUEST requested = REQUEST_MATRIX;
    float requestedValues[6] = {};
    bool waitsForDevice = false;
    mutable tbNullCounts counts;
};
