#include <tamber/display/tbMouse.h>

#include <tamber/display/tbCamera.h>
#include <tamber/display/tbWindow.h>
#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_SERVICE_CLASS(tbMouse, tbQueue)

namespace
{

constexpr int NUM_MOUSE_EVENTS = 25;

// Coordinate 0 is the edge whatever the size is, so that a window without a size never divides by it.
float normalised(int coordinate, int size)
{
    if (coordinate == 0 || size == 0)
        return -1.0f;
    return 2.0f * (float(coordinate) / float(size) - 0.5f);
}

} // namespace

tbMouse::tbMouse() : tbQueue(int(sizeof(tbMouseData)), NUM_MOUSE_EVENTS)
{
    initInstance();
}

tbMouse::tbMouse(const tbMouse& other) : tbQueue(other)
{
    initInstance();
}

tbMouse::~tbMouse()
{
    deleteInstance();
}

tbBase* tbMouse::createCopy() const
{
    return tbiCopyOf(*this);
}

bool tbMouse::set(tbWindow* window, int x, int y, unsigned int buttons)
{
    int width = 0;
    int height = 0;
    if (window)
        window->getSize(width, height);
    return set(window, x, y, normalised(x, width), normalised(y, height), buttons);
}

bool tbMouse::set(tbWindow* window, int x, int y, float nx, float ny, unsigned int buttons)
{
    const tbMouseData event = {buttons, std::int16_t(x), std::int16_t(y), nx, ny, window};
    return put(&event);
}

bool tbMouse::sample(tbMouseData& data, tbCamera* camera) const
{
    if (!tbQueue::sample(&data))
        return false;
    if (!camera)
        return true;
    int left = 0;
    int right = 0;
    int bottom = 0;
    int top = 0;
    camera->getViewport(left, right, bottom, top);
    return left <= data.x && data.x <= right && bottom <= data.y && data.y <= top;
}

bool tbMouse::test() const
{
    return getCount() > 0;
}
