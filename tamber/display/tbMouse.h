#pragma once

#include <tamber/thread/tbQueue.h>

class tbCamera;
class tbWindow;

// One mouse event.
struct tbMouseData
{
    unsigned int buttons; // the window system's button state
    std::int16_t x, y;    // pixels in the window
    float nx, ny;         // -1 to 1 across the window
    tbWindow* window;
};

// The queue of mouse events between the window system's thread and the application's. When it is full, each new event
// takes the place of the oldest.
class TB_API tbMouse : public tbQueue
{
    TB_CLASS(tbMouse, tbQueue)

public:
    tbMouse();
    tbMouse(const tbMouse& other);

    using tbQueue::get;
    using tbQueue::sample;
    tbBase* createCopy() const override;

    /// Called by the window with pixel coordinates, cut to 16 bits. The y axis is not turned round.
    virtual bool set(tbWindow* window, int x, int y, unsigned int buttons);
    virtual bool set(tbWindow* window, int x, int y, float nx, float ny, unsigned int buttons);
    /// Copies the oldest event, which stays in the queue. False when there is none, and when it lies outside the
    /// viewport of `camera`, which may be null.
    virtual bool sample(tbMouseData& data, tbCamera* camera) const;

    /// True when an event is waiting.
    bool test() const;

protected:
    ~tbMouse() override;
};
