#include "tbNullCamera.h"

#include <tamber/display/tbRenderContext.h>
#include <tamber/display/tbWindow.h>
#include <tamber/graph/tbScene.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include "tbiProjection.h"

#include <algorithm>
#include <cmath>

TB_DEFINE_CLASS(tbNullCamera, tbCamera)

namespace
{

constexpr float SMALLEST_FOV = 0.01f;
constexpr float LARGEST_FOV = 179.0f;
constexpr double HALF_ANGLE = 0.017453292519943295 / 2.0;

float extent(float angle, float distance)
{
    return float(double(distance) * std::tan(double(angle) * HALF_ANGLE));
}

int verticesPerPrimitive(const tbGeometry* geometry, int numVertices)
{
    const int primitives = geometry->getNumPrimitives();
    if (primitives <= 0)
        return 0;
    return (geometry->getNumIndices() > 0 ? geometry->getNumIndices() : numVertices) / primitives;
}

} // namespace

tbNullCamera::tbNullCamera()
{
    initInstance();
    takeProjection(tbiProjection());
}

tbNullCamera::tbNullCamera(const tbNullCamera& other)
    : tbCamera(other),
      eyeFrustum(other.eyeFrustum),
      horizontalFOV(other.horizontalFOV),
      verticalFOV(other.verticalFOV),
      requested(other.requested),
      waitsForDevice(other.waitsForDevice)
{
    initInstance();
    std::copy(std::begin(other.requestedValues), std::end(other.requestedValues), requestedValues);
    tbNullCamera::updateScreenMatrices();
}

tbNullCamera& tbNullCamera::operator=(const tbNullCamera& other)
{
    if (this == &other)
        return *this;
    tbCamera::operator=(other);
    eyeFrustum = other.eyeFrustum;
    horizontalFOV = other.horizontalFOV;
    verticalFOV = other.verticalFOV;
    requested = other.requested;
    waitsForDevice = other.waitsForDevice;
    std::copy(std::begin(other.requestedValues), std::end(other.requestedValues), requestedValues);
    updateScreenMatrices();
    return *this;
}

tbNullCamera::~tbNullCamera()
{
    deleteInstance();
}

tbBase* tbNullCamera::createCopy() const
{
    return new tbNullCamera(*this);
}

tbVolume::CONTAINMENT tbNullCamera::CountingFrustum::contains(const tbSphere& sphere) const
{
    const CONTAINMENT result = tbFrustum::contains(sphere);
    ++tests;
    if (result == OUTSIDE)
        ++culled;
    return result;
}

tbRenderContext* tbNullCamera::getDevice() const
{
    return getWindow() ? getWindow()->getRenderContext() : nullptr;
}

// Nodes test their spheres in rendering space, into which the walk's first matrix brings the world. The frustum
// differs from the one in the camera's frame by the turn between the two frames alone.
void tbNullCamera::updateScreenMatrices()
{
    tbCamera::updateScreenMatrices();
    frustum.xform(eyeFrustum, getCameraToRenderingMatrix());
}

void tbNullCamera::takeProjection(const tbiProjection& bounds)
{
    bounds.makeFrustum(eyeFrustum);
    bounds.getFOV(horizontalFOV, verticalFOV);
    frustum.xform(eyeFrustum, getCameraToRenderingMatrix());
}

void tbNullCamera::setProjectionMatrix(const tbMatrix& matrix)
{
    requested = REQUEST_MATRIX;
    waitsForDevice = false;
    tbCamera::setProjectionMatrix(matrix);
    takeProjection(tbiProjection::of(matrix));
}

void tbNullCamera::request(REQUEST kind, std::initializer_list<float> values)
{
    requested = kind;
    std::copy(values.begin(), values.end(), requestedValues);
    carryOutRequest();
}

void tbNullCamera::carryOutRequest()
{
    const REQUEST kind = requested;
    const float* v = requestedValues;
    tbiProjection bounds;
    if (kind == REQUEST_FOV)
    {
        float nearDist = 0.0f;
        float farDist = 0.0f;
        getNearFar(nearDist, farDist);
        const float x = extent(v[0], nearDist);
        const float z = extent(v[1], nearDist);
        bounds = {tbiProjection::PERSPECTIVE, -x, x, -z, z, nearDist, farDist};
    }
    else if (kind != REQUEST_MATRIX)
    {
        const bool ortho = kind == REQUEST_ORTHO;
        bounds = {
            ortho ? tbiProjection::ORTHO : tbiProjection::PERSPECTIVE, v[0], v[1], v[2], v[3], v[4], v[5]};
    }
    else
        return;
    makeProjection(bounds);
    requested = kind;
    waitsForDevice = !getDevice();
}

// The bounds themselves are nearer the truth than what can be read off the matrix.
void tbNullCamera::makeProjection(const tbiProjection& p)
{
    const bool ortho = p.kind == tbiProjection::ORTHO;
    setProjectionType(ortho ? PROJ_ORTHO : PROJ_PERSPECTIVE);
    if (ortho)
        tbCamera::makeOrthoProjMatrix(p.left, p.right, p.bottom, p.top, p.nearDist, p.farDist);
    else
        tbCamera::makePerspProjMatrix(p.left, p.right, p.bottom, p.top, p.nearDist, p.farDist);
    if (getDevice())
        takeProjection(p);
}

void tbNullCamera::makeOrthoProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                       float farDist)
{
    tbCamera::setNearFar(nearDist, farDist);
    request(REQUEST_ORTHO, {left, right, bottom, top, nearDist, farDist});
}

void tbNullCamera::makePerspProjMatrix(float left, float right, float bottom, float top, float nearDist,
                                       float farDist)
{
    tbCamera::setNearFar(nearDist, farDist);
    request(REQUEST_PERSP, {left, right, bottom, top, nearDist, farDist});
}

void tbNullCamera::setFOV(float horizontal, float vertical)
{
    request(REQUEST_FOV, {std::clamp(horizontal, SMALLEST_FOV, LARGEST_FOV),
                          std::clamp(vertical, SMALLEST_FOV, LARGEST_FOV)});
}

void tbNullCamera::getFOV(float& horizontal, float& vertical) const
{
    horizontal = horizontalFOV;
    vertical = verticalFOV;
}

void tbNullCamera::setNearFar(float nearDist, float farDist)
{
    tbCamera::setNearFar(nearDist, farDist);
    if (requested == REQUEST_FOV)
        carryOutRequest();
}

void tbNullCamera::setWindow(tbWindow* newWindow)
{
    tbCamera::setWindow(newWindow);
    if (waitsForDevice)
        carryOutRequest();
}

void tbNullCamera::applyViewport()
{
    applyWindowViewport();
}

void tbNullCamera::clear()
{
    ++counts.clears;
    if (tbRenderContext* device = getDevice())
        device->clear(this);
}

void tbNullCamera::loadMatrices()
{
    if (tbRenderContext* device = getDevice())
    {
        device->setMatrixMode(tbRenderContext::MATRIX_MODE_PROJECTION);
        device->loadMatrix(getProjectionMatrix());
        device->setMatrixMode(tbRenderContext::MATRIX_MODE_MODEL);
        device->loadMatrix(getWorldToRenderingMatrix());
    }
    counts.matrices += 2;
    clearScreenMatricesChanged();
}

void tbNullCamera::loadModelMatrix(const tbMatrix& matrix)
{
    ++counts.matrices;
    if (tbRenderContext* device = getDevice())
        device->loadMatrix(matrix);
}

void tbNullCamera::setAppliedVisualTrait(const tbVisualTrait* trait)
{
    ++counts.visualTraits;
    tbCamera::setAppliedVisualTrait(trait);
}

// The device's stack knows what is in force on it, whichever camera drew last.
void tbNullCamera::takeTraitStack(tbTravContext* walk)
{
    tbRenderContext* device = getDevice();
    if (device && walk->getTraitStack() != device->getTraitStack())
        walk->setTraitStack(device->getTraitStack());
    else if (!device && !walk->getTraitStack())
        walk->setTraitStack(new tbTraitStack(
            tbTraitStack::STACK_TYPES(tbTraitStack::VISUAL_STACK | tbTraitStack::TRAV_STACK), true));
}

void tbNullCamera::popTraits(tbTravContext* walk)
{
    tbTraitStack* stack = walk->getTraitStack();
    if (!stack)
        return;
    for (int i = getNumVisualTraits() - 1; i >= 0; --i)
        stack->popTrait(getVisualTrait(i), walk);
    for (int i = getNumTravTraits() - 1; i >= 0; --i)
        stack->popTrait(getTravTrait(i), walk);
}

void tbNullCamera::draw(tbGroup* root)
{
    tbTravContext* walk = getTravContext();
    if (!root || !walk)
        return;
    if (waitsForDevice && getDevice())
        carryOutRequest();
    ++counts.walks;
    takeTraitStack(walk);
    walk->setCamera(this);
    walk->setScene(root->isOfType(tbScene::getClassType()) ? static_cast<tbScene*>(root) : nullptr);
    root->applyDirect(this, true);
    walk->reset();
    if (walk->getTraitStack())
        walk->getTraitStack()->applyDefaultTravTraits(walk);
    applyViewport();
    if (isClearEnabled())
        clear();
    loadMatrices();
    applyTraits();
    walk->pushMatrix(getWorldToRenderingMatrix());
    walk->pushInvertMatrix(getRenderingToWorldMatrix());
    static_cast<const tbGroup*>(root)->apply(this);
    walk->popInvertMatrix();
    walk->popMatrix();
    popTraits(walk);
    root->applyDirect(this, false);
}

void tbNullCamera::drawGeometry(const tbGeometry* geometry)
{
    tbTravContext* walk = getTravContext();
    if (tbTraitStack* stack = walk->getTraitStack())
    {
        stack->applyVisualTraitStacks(this);
        stack->applyTraits(this, 0, nullptr);
    }
    loadModelMatrix(walk->getMatrix());

    const tbVertexArray* array = geometry->getVertexArray();
    const int numVertices = array ? array->getNum() : 0;
    ++counts.geometries;
    counts.primitives += geometry->getNumPrimitives();
    counts.vertices += numVertices;
    if (verticesPerPrimitive(geometry, numVertices) == 3)
        counts.triangles += geometry->getNumPrimitives();
}

const tbNullCounts& tbNullCamera::getCounts() const
{
    counts.sphereTests = frustum.tests;
    counts.culled = frustum.culled;
    return counts;
}

void tbNullCamera::resetCounts()
{
    counts = {};
    frustum.tests = 0;
    frustum.culled = 0;
}
