#include <tamber/display/tbCamera.h>

#include <tamber/display/tbRenderContext.h>
#include <tamber/display/tbWindow.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>
#include <tamber/trav/tbiTraitList.h>

#include <algorithm>
#include <cmath>

TB_DEFINE_ABSTRACT_CLASS(tbCamera, tbBase)

constinit std::atomic<int> tbCamera::nextIndex{0};

namespace
{

// The camera walk visits subtrees that hold geometry.
constexpr unsigned CAMERA_TRAV_MASK = tbGroup::TF_HAS_GEOMETRY;

struct FrameMatrices
{
    FrameMatrices()
    {
        e2oMat.makeRot(-90.0f, 1.0f, 0.0f, 0.0f);
        o2eMat.invert(e2oMat);
    }

    tbMatrix e2oMat; // camera to rendering
    tbMatrix o2eMat; // rendering to camera
};

FrameMatrices& frameMatrices()
{
    static FrameMatrices matrices;
    return matrices;
}

// What is no number counts as 0.
float clampFraction(float value)
{
    return value > 0.0f ? std::min(value, 1.0f) : 0.0f;
}

// A window without an extent has one place: its lower edge.
float toFraction(int pixels, int extent)
{
    return extent != 0 ? float(pixels) / float(extent) : 0.0f;
}

int toPixels(float fraction, int extent)
{
    return int(std::lround(fraction * float(extent)));
}

float toClip(float value, float origin, float extent)
{
    return extent != 0.0f ? (value - origin) * 2.0f / extent - 1.0f : -1.0f;
}

float fromClip(float value, float origin, float extent)
{
    return (value + 1.0f) * extent * 0.5f + origin;
}

} // namespace

tbCamera::tbCamera()
    : position(0.0f, 0.0f, 0.0f),
      orientation(0.0f, 0.0f, 0.0f),
      clearColor(0.0f, 0.0f, 0.0f, 1.0f),
      accumClearColor(0.0f, 0.0f, 0.0f, 1.0f),
      index(nextIndex.fetch_add(1, std::memory_order_relaxed))
{
    initInstance();
    worldToCamera.makeIdent();
    cameraMatrix.makeIdent();
    projection.makeIdent();
    createContext();
    tbCamera::updateScreenMatrices();
}

tbCamera::tbCamera(const tbCamera& other)
    : tbBase(other),
      index(nextIndex.fetch_add(1, std::memory_order_relaxed))
{
    initInstance();
    createContext();
    assign(other);
}

tbCamera& tbCamera::operator=(const tbCamera& other)
{
    if (this != &other)
    {
        tbBase::operator=(other);
        assign(other);
    }
    return *this;
}

tbCamera::~tbCamera()
{
    deleteInstance();
    tbiDropTraits(visualTraits);
    tbiDropTraits(travTraits);
    if (!context)
        return;
    if (context->getCamera() == this)
        context->setCamera(nullptr);
    context->unRef();
}

void tbCamera::createContext()
{
    context = new tbTravContext;
    if (!context)
        return;
    context->ref();
    context->reset();
    context->setCamera(this);
    context->setTravMask(CAMERA_TRAV_MASK);
}

void tbCamera::assign(const tbCamera& other)
{
    projectionType = other.projectionType;
    viewLeft = other.viewLeft;
    viewRight = other.viewRight;
    viewBottom = other.viewBottom;
    viewTop = other.viewTop;
    window = other.window;
    position = other.position;
    orientation = other.orientation;
    worldToCamera = other.worldToCamera;
    cameraMatrix = other.cameraMatrix;
    tbiDropTraits(visualTraits);
    tbiDropTraits(travTraits);
    tbiHoldTraits(visualTraits, other.visualTraits);
    tbiHoldTraits(travTraits, other.travTraits);
    clearMode = other.clearMode;
    clearColor = other.clearColor;
    clearDepth = other.clearDepth;
    clearStencil = other.clearStencil;
    accumClearColor = other.accumClearColor;
    state = other.state;
    projection = other.projection;
    nearDistance = other.nearDistance;
    farDistance = other.farDistance;
    tbCamera::updateScreenMatrices();
}

void tbCamera::updateScreenMatrices()
{
    const tbMatrix& e2oMat = frameMatrices().e2oMat;
    state |= SCREEN_MATRICES_CHANGED;
    worldToScreen = projection;
    worldToScreen.preMult(e2oMat);
    worldToScreen.preMult(worldToCamera);
    worldToRendering = worldToCamera;
    worldToRendering.postMult(e2oMat);
    renderingToWorld.invert(worldToRendering);
    screenToWorld.invert(worldToScreen);
}

void tbCamera::setWindow(tbWindow* newWindow)
{
    window = newWindow;
}

void tbCamera::forgetWindow(const tbWindow* dying)
{
    for (int i = getNum(true) - 1; i >= 0; --i)
        if (tbCamera* camera = get(i, true); camera && camera->window == dying)
            camera->window = nullptr;
}

void tbCamera::setViewport(int left, int right, int bottom, int top)
{
    if (!window)
        return;
    int width = 0;
    int height = 0;
    window->getSize(width, height);
    setViewport(toFraction(left, width), toFraction(right, width), toFraction(bottom, height),
                toFraction(top, height));
}

void tbCamera::setViewport(float left, float right, float bottom, float top)
{
    viewLeft = clampFraction(left);
    viewRight = clampFraction(right);
    viewBottom = clampFraction(bottom);
    viewTop = clampFraction(top);
}

void tbCamera::getViewport(float& left, float& right, float& bottom, float& top) const
{
    left = viewLeft;
    right = viewRight;
    bottom = viewBottom;
    top = viewTop;
}

void tbCamera::getViewport(int& left, int& right, int& bottom, int& top) const
{
    int width = 0;
    int height = 0;
    if (window)
        window->getSize(width, height);
    left = toPixels(viewLeft, width);
    right = toPixels(viewRight, width);
    bottom = toPixels(viewBottom, height);
    top = toPixels(viewTop, height);
}

tbRenderContext* tbCamera::getRenderContext() const
{
    return window ? window->getRenderContext() : nullptr;
}

void tbCamera::applyWindowViewport()
{
    if (tbRenderContext* renderContext = getRenderContext())
        renderContext->setViewport(this);
}

void tbCamera::setNearFar(float nearDist, float farDist)
{
    nearDistance = nearDist;
    farDistance = farDist;
}

void tbCamera::getNearFar(float& nearDist, float& farDist) const
{
    nearDist = nearDistance;
    farDist = farDistance;
}

void tbCamera::enableClear(bool enable)
{
    state = enable ? state | CLEAR_ENABLED : state & ~CLEAR_ENABLED;
}

void tbCamera::setClearMode(unsigned mode)
{
    clearMode = mode;
}

void tbCamera::setClearColor(const tbVec4& color)
{
    clearColor = color;
}

void tbCamera::setClearDepth(double depth)
{
    clearDepth = depth;
}

void tbCamera::setAccumClearColor(const tbVec4& color)
{
    accumClearColor = color;
}

void tbCamera::setClearStencil(int stencil)
{
    clearStencil = stencil;
}

void tbCamera::readPlacement()
{
    cameraMatrix.getHPR(orientation[0], orientation[1], orientation[2]);
    cameraMatrix.getXYZ(position[0], position[1], position[2]);
    updateScreenMatrices();
}

void tbCamera::setMatrix(const tbMatrix& matrix)
{
    cameraMatrix = matrix;
    worldToCamera.invert(cameraMatrix);
    readPlacement();
}

void tbCamera::setWorldToCameraMatrix(const tbMatrix& matrix)
{
    worldToCamera = matrix;
    cameraMatrix.invert(worldToCamera);
    readPlacement();
}

void tbCamera::place(const tbVec3& xyz, const tbVec3& hpr)
{
    if (xyz == position && hpr == orientation)
        return;
    position = xyz;
    orientation = hpr;
    cameraMatrix.makeHPR(hpr[0], hpr[1], hpr[2]);
    cameraMatrix.setXYZ(xyz[0], xyz[1], xyz[2]);
    worldToCamera.invert(cameraMatrix);
    updateScreenMatrices();
}

void tbCamera::setXYZHPR(const tbVec3& xyz, const tbVec3& hpr)
{
    place(xyz, hpr);
}

void tbCamera::setXYZ(const tbVec3& xyz)
{
    place(xyz, orientation);
}

void tbCamera::setXYZ(float x, float y, float z)
{
    place(tbVec3(x, y, z), orientation);
}

void tbCamera::setHPR(const tbVec3& hpr)
{
    place(position, hpr);
}

void tbCamera::setHPR(float h, float p, float r)
{
    place(position, tbVec3(h, p, r));
}

void tbCamera::getXYZ(float& x, float& y, float& z) const
{
    x = position[0];
    y = position[1];
    z = position[2];
}

void tbCamera::getHPR(float& h, float& p, float& r) const
{
    h = orientation[0];
    p = orientation[1];
    r = orientation[2];
}

void tbCamera::setProjectionMatrix(const tbMatrix& matrix)
{
    projection = matrix;
    updateScreenMatrices();
}

const tbMatrix& tbCamera::getProjectionMatrix() const
{
    return projection;
}

void tbCamera::makeOrthoProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                   float farDist)
{
    tbMatrix matrix;
    if (tbRenderContext* renderContext = getRenderContext())
        renderContext->makeOrthoProjMatrix(matrix, left, right, bottom, top, nearDist, farDist);
    else
        matrix.makeIdent();
    setProjectionMatrix(matrix);
}

void tbCamera::makePerspProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                   float farDist)
{
    tbMatrix matrix;
    if (tbRenderContext* renderContext = getRenderContext())
        renderContext->makePerspProjMatrix(matrix, left, right, bottom, top, nearDist, farDist);
    else
        matrix.makeIdent();
    setProjectionMatrix(matrix);
}

void tbCamera::setAppliedVisualTrait(const tbVisualTrait* trait)
{
    if (!trait || !trait->getType())
        return;
    const int slot = trait->getType()->getIndex();
    if (slot < 0)
        return;
    while (appliedVisualTraits.getNum() <= slot)
        if (appliedVisualTraits.add(nullptr) < 0)
            return;
    appliedVisualTraits[slot] = trait;
}

const tbVisualTrait* tbCamera::getAppliedVisualTrait(const tbVisualTraitType* type) const
{
    const int slot = type ? type->getIndex() : -1;
    return appliedVisualTraits.indexInRange(slot) ? appliedVisualTraits[slot] : nullptr;
}

void tbCamera::setTravContext(tbTravContext* newContext)
{
    if (newContext)
        newContext->ref();
    if (context)
        context->unRef();
    context = newContext;
}

void tbCamera::applyTraits()
{
    if (!context)
        return;
    tbiPushTraits(travTraits, context);
    if (!context->anyFlags(tbTravContext::PRUNE))
        tbiPushTraits(visualTraits, context);
}

void tbCamera::addTrait(tbTravTrait* trait)
{
    tbiHoldTrait(travTraits, trait);
}

void tbCamera::addTrait(tbVisualTrait* trait)
{
    tbiHoldTrait(visualTraits, trait);
}

void tbCamera::removeTrait(tbTravTrait* trait)
{
    tbiDropTrait(travTraits, trait);
}

void tbCamera::removeTrait(tbVisualTrait* trait)
{
    tbiDropTrait(visualTraits, trait);
}

bool tbCamera::getPixelViewport(tbVec3& lowerLeft, tbVec3& size) const
{
    if (!window)
        return false;
    int left = 0;
    int right = 0;
    int bottom = 0;
    int top = 0;
    getViewport(left, right, bottom, top);
    lowerLeft.set(float(left), float(bottom), 0.0f);
    size.set(float(right - left), float(top - bottom), farDistance - nearDistance);
    return true;
}

void tbCamera::getWindowCoords(const tbVec3& world, tbVec3& win) const
{
    tbVec3 lowerLeft;
    tbVec3 size;
    if (!getPixelViewport(lowerLeft, size))
    {
        win.set(0.0f, 0.0f, 0.0f);
        return;
    }
    tbVec3 clip;
    clip.fullXformPt(world, worldToScreen);
    for (int i = 0; i < 3; ++i)
        win[i] = fromClip(clip[i], lowerLeft[i], size[i]);
}

void tbCamera::getWorldCoords(const tbVec3& win, tbVec3& world) const
{
    tbVec3 lowerLeft;
    tbVec3 size;
    if (!getPixelViewport(lowerLeft, size))
    {
        world.set(0.0f, 0.0f, 0.0f);
        return;
    }
    tbVec3 clip;
    for (int i = 0; i < 3; ++i)
        clip[i] = toClip(win[i], lowerLeft[i], size[i]);
    world.fullXformPt(clip, screenToWorld);
}

const tbMatrix& tbCamera::getCameraToRenderingMatrix()
{
    return frameMatrices().e2oMat;
}

const tbMatrix& tbCamera::getRenderingToCameraMatrix()
{
    return frameMatrices().o2eMat;
}

void tbCamera::setCameraToRenderingMatrix(const tbMatrix& matrix)
{
    frameMatrices().e2oMat = matrix;
    frameMatrices().o2eMat.invert(matrix);
}
