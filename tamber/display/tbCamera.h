#pragma once

#include <tamber/kernel/tbBase.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbVec4.h>

class tbFrustum;
class tbGroup;
class tbTravContext;
class tbTravTrait;
class tbVisualTrait;
class tbVisualTraitType;
class tbWindow;

// A viewpoint: a placement in the world, a projection, a viewport in a window, how the window is cleared, and the
// traits that the camera lays on everything it draws. The drawing plug-in completes it.
//
// Spaces: world, then camera (looks along +Y, Z up), then rendering (the camera frame turned by -90 degrees about
// X: looks down -Z, Y up), then screen (clip space). The camera keeps the matrices between them. Its context
// carries the state of its walk; a concrete camera pushes world-to-rendering on it first, so that nodes meet the
// frustum in rendering space.
class TB_API tbCamera : public tbBase
{
    TB_CLASS(tbCamera, tbBase)

public:
    enum PROJ_TYPE : std::int32_t
    {
        PROJ_NONE = 0,
        PROJ_PERSPECTIVE = 1,
        PROJ_ORTHO = 2
    };
    /// Bits of the clear mode: the buffers that clear() fills.
    enum CLEAR_MODE : std::uint32_t
    {
        CLEAR_COLOR = 0x1,
        CLEAR_DEPTH = 0x2,
        CLEAR_STENCIL = 0x4,
        CLEAR_ACCUM = 0x8
    };

    /// Rebuilds the cached matrices; runs after every change of placement or projection.
    virtual void updateScreenMatrices();
    /// The view volume in rendering space.
    virtual const tbFrustum* getFrustum() const = 0;
    /// Walks the graph below `root` and draws what is seen. The caller holds the scene for query.
    virtual void draw(tbGroup* root) = 0;
    /// Opening angles in degrees.
    virtual void setFOV(float horizontal, float vertical) = 0;
    virtual void getFOV(float& horizontal, float& vertical) const = 0;
    /// The camera holds no reference on its window.
    virtual void setWindow(tbWindow* newWindow);
    /// In pixels; nothing happens without a window.
    virtual void setViewport(int left, int right, int bottom, int top);
    /// As fractions of the window, each cut to [0, 1].
    virtual void setViewport(float left, float right, float bottom, float top);
    /// Brings the viewport to the device.
    virtual void applyViewport() = 0;
    /// Brings the viewport to the render context of the window, when there are both.
    virtual void applyWindowViewport();
    /// Remembers the distances; the projection stays.
    virtual void setNearFar(float nearDist, float farDist);
    virtual void enableClear(bool enable);
    /// Clears the buffers that the clear mode names.
    virtual void clear() = 0;
    virtual void setClearMode(unsigned mode);
    virtual void setClearColor(const tbVec4& color);
    virtual void setClearDepth(double depth);
    virtual void setAccumClearColor(const tbVec4& color);
    virtual void setClearStencil(int stencil);
    /// Places the camera: camera to world.
    virtual void setMatrix(const tbMatrix& matrix);
    virtual void setWorldToCameraMatrix(const tbMatrix& matrix);
    virtual void setProjectionMatrix(const tbMatrix& matrix);
    virtual const tbMatrix& getProjectionMatrix() const;
    /// Bounds at the near distance. The window's render context builds the matrix; without one it is the identity.
    virtual void makeOrthoProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                     float farDist);
    virtual void makePerspProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                     float farDist);
    /// Each does nothing when the values are the present ones.
    virtual void setXYZHPR(const tbVec3& xyz, const tbVec3& hpr);
    virtual void setXYZ(const tbVec3& xyz);
    virtual void setXYZ(float x, float y, float z);
    virtual void setHPR(const tbVec3& hpr);
    virtual void setHPR(float h, float p, float r);
    /// Brings projection and world-to-rendering matrix to the device.
    virtual void loadMatrices() = 0;
    /// Brings the matrix from a node's coordinates to rendering space to the device.
    virtual void loadModelMatrix(const tbMatrix& matrix) = 0;
    /// Records the trait last applied of its type; not referenced.
    virtual void setAppliedVisualTrait(const tbVisualTrait* trait);
    /// Takes a reference on the new context and drops the old one's.
    virtual void setTravContext(tbTravContext* newContext);
    /// Pushes the camera's traits on the context's trait stack: traversal traits, then, unless the context is
    /// pruned, visual traits.
    virtual void applyTraits();
    /// Takes a reference. Null and traits without a type are ignored.
    virtual void addTrait(tbTravTrait* trait);
    virtual void addTrait(tbVisualTrait* trait);
    /// A stranger is ignored; the last trait moves into the free place.
    virtual void removeTrait(tbTravTrait* trait);
    virtual void removeTrait(tbVisualTrait* trait);

    void setProjectionType(PROJ_TYPE type) { projectionType = type; }
    PROJ_TYPE getProjectionType() const { return projectionType; }
    void getViewport(float& left, float& right, float& bottom, float& top) const;
    /// In pixels of the window, to the nearest; zeros without a window.
    void getViewport(int& left, int& right, int& bottom, int& top) const;
    tbWindow* getWindow() const { return window; }
    void getNearFar(float& nearDist, float& farDist) const;

    const tbMatrix& getMatrix() const { return cameraMatrix; }
    const tbMatrix& getWorldToCameraMatrix() const { return worldToCamera; }
    const tbMatrix& getWorldToScreenMatrix() const { return worldToScreen; }
    const tbMatrix& getScreenToWorldMatrix() const { return screenToWorld; }
    const tbMatrix& getWorldToRenderingMatrix() const { return worldToRendering; }
    const tbMatrix& getRenderingToWorldMatrix() const { return renderingToWorld; }
    const tbVec3& getXYZ() const { return position; }
    void getXYZ(float& x, float& y, float& z) const;
    const tbVec3& getHPR() const { return orientation; }
    void getHPR(float& h, float& p, float& r) const;

    /// True once the screen matrices were rebuilt, until the drawing side has loaded them and says so.
    bool screenMatricesChanged() const { return (state & SCREEN_MATRICES_CHANGED) != 0; }
    void clearScreenMatricesChanged() { state &= ~SCREEN_MATRICES_CHANGED; }
    bool isClearEnabled() const { return (state & CLEAR_ENABLED) != 0; }
    unsigned getClearMode() const { return clearMode; }
    const tbVec4& getClearColor() const { return clearColor; }
    double getClearDepth() const { return clearDepth; }
    const tbVec4& getAccumClearColor() const { return accumClearColor; }
    int getClearStencil() const { return clearStencil; }

    int getNumVisualTraits() const { return visualTraits.getNum(); }
    tbVisualTrait* getVisualTrait(int i) const { return visualTraits[i]; }
    int getNumTravTraits() const { return travTraits.getNum(); }
    tbTravTrait* getTravTrait(int i) const { return travTraits[i]; }
    /// Null when none of that type was recorded.
    const tbVisualTrait* getAppliedVisualTrait(const tbVisualTraitType* type) const;

    /// A world point in window pixels, from the window's lower left corner; z runs from 0 at the near to far - near
    /// at the far distance. (0, 0, 0) without a window.
    void getWindowCoords(const tbVec3& world, tbVec3& win) const;
    /// The inverse of getWindowCoords(); (0, 0, 0) without a window.
    void getWorldCoords(const tbVec3& win, tbVec3& world) const;

    tbTravContext* getTravContext() const { return context; }
    /// Number of this camera in the order of creation.
    int getIndex() const { return index; }

    static const tbMatrix& getCameraToRenderingMatrix();
    static const tbMatrix& getRenderingToCameraMatrix();
    /// For all cameras; each follows with its next change of placement or projection.
    static void setCameraToRenderingMatrix(const tbMatrix& matrix);

protected:
    tbCamera();
    /// Copies everything but the context: the copy gets its own.
    tbCamera(const tbCamera& other);
    /// Context and index stay.
    tbCamera& operator=(const tbCamera& other);
    ~tbCamera() override;

private:
    friend class tbWindow;

    static constexpr unsigned SCREEN_MATRICES_CHANGED = 0x1;
    static constexpr unsigned CLEAR_ENABLED = 0x2;

    void createContext();
    void assign(const tbCamera& other);
    /// Cameras of a window that dies have none.
    static void forgetWindow(const tbWindow* dying);
    void place(const tbVec3& xyz, const tbVec3& hpr);
    void readPlacement();
    bool getPixelViewport(tbVec3& lowerLeft, tbVec3& size) const;
    tbRenderContext* getRenderContext() const;

    static std::atomic<int> nextIndex;

    PROJ_TYPE projectionType = PROJ_NONE;
    float viewLeft = 0.0f;
    float viewRight = 1.0f;
    float viewBottom = 0.0f;
    float viewTop = 1.0f;
    tbWindow* window = nullptr;
    tbVec3 position;
    tbVec3 orientation;
    tbMatrix worldToCamera;
    tbMatrix cameraMatrix;
    tbMatrix worldToScreen;
    tbMatrix screenToWorld;
    tbMatrix worldToRendering;
    tbMatrix renderingToWorld;
    tbTravContext* context = nullptr;
    tbTList<tbVisualTrait*> visualTraits;
    tbTList<tbTravTrait*> travTraits;
    tbTList<const tbVisualTrait*> appliedVisualTraits;
    unsigned clearMode = CLEAR_COLOR | CLEAR_DEPTH;
    tbVec4 clearColor;
    double clearDepth = 1.0;
    std::int32_t clearStencil = 0;
    tbVec4 accumClearColor;
    unsigned state = SCREEN_MATRICES_CHANGED | CLEAR_ENABLED;
    tbMatrix projection;
    float nearDistance = 1.0f;
    float farDistance = 1000.0f;
    std::int32_t index;
};
