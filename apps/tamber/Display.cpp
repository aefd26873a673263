#include "Display.h"

#include "CommandError.h"
#include "RequiredModule.h"

#include <tamber/display/tbCamera.h>
#include <tamber/display/tbWindow.h>
#include <tamber/graph/tbGroupType.h>
#include <tamber/graph/tbScene.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbSphere.h>

#include <cmath>

namespace
{
constexpr const char* MODULE = "tbNull.dll";
constexpr float FIELD_OF_VIEW = 60.0f;
constexpr float ASPECT = 4.0f / 3.0f;

// The circle lies within the model's bounds, so that a part of a large model is always out of sight.
constexpr float CIRCLE_RADIUS = 0.5f;
constexpr float CIRCLE_HEIGHT = 0.15f;
constexpr float NEAR_DISTANCE = 0.001f;
constexpr float FAR_DISTANCE = 4.0f;

constexpr float DEGREES = 57.29578f;

template <class Class>
tbRef<Class> create(const char* className)
{
    tbBase* object = tbType::createInstance(className);
    if (!object)
        throw CommandError(MODULE, std::string("does not supply ") + className);
    return static_cast<Class*>(object);
}
} // namespace

Display::Display()
{
    requireModule(MODULE);
    window = create<tbWindow>("tbNullWindow");
    if (!window->open())
        throw CommandError(MODULE, "its window does not open");
    camera = create<tbCamera>("tbNullCamera");
    counter = tbNullCounter::of(camera.get());
    if (!counter)
        throw CommandError(MODULE, "its camera does not count");
    camera->setWindow(window.get());
    camera->setFOV(FIELD_OF_VIEW, FIELD_OF_VIEW / ASPECT);
    stats = new tbStats(tbTraitStack::STACK_TYPES(0));
    camera->getTravContext()->setStats(stats.get());
}

Display::~Display()
{
    camera.reset();
    if (window)
        window->close();
}

void Display::placeCamera(const tbSphere& bounds, float angle)
{
    tbVec3 center(0.0f, 0.0f, 0.0f);
    float radius = 1.0f;
    if (!bounds.isEmpty() && std::isfinite(bounds.getRadius()) && bounds.getRadius() > 0.0f)
    {
        center = *bounds.getCenter();
        radius = bounds.getRadius();
    }
    const float turn = angle / DEGREES;
    const tbVec3 ahead(-std::sin(turn), std::cos(turn), 0.0f);
    tbVec3 position = center - ahead * (CIRCLE_RADIUS * radius);
    position[2] += CIRCLE_HEIGHT * radius;
    camera->setNearFar(NEAR_DISTANCE * radius, FAR_DISTANCE * radius);
    camera->setXYZHPR(position, tbVec3(angle, -std::atan2(CIRCLE_HEIGHT, CIRCLE_RADIUS) * DEGREES, 0.0f));
}

void Display::draw(tbScene& scene)
{
    stats->reset();
    counter->resetCounts();
    window->beginDraw();
    camera->draw(&scene);
    window->endDraw();
}

Display::Counts Display::getCounts() const
{
    Counts counts{0, counter->getCounts()};
    for (int i = 0; i < tbGroupType::getNumGroupTypes(); ++i)
        counts.visited += stats->getCount(tbGroupType::getGroupType(i));
    return counts;
}
