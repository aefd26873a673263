#include <tamber/thread/tbiWait.h>

#include <tamber/thread/tbiThreadControl.h>

tbiWait::tbiWait(std::mutex& mutex, std::condition_variable& waitsFor)
    : control(tbiThreadControl::getCurrent()),
      signal(waitsFor)
{
    if (control)
        control->beginWait(mutex, signal);
    held = tbiHold(mutex);
}

tbiWait::~tbiWait()
{
    if (held.owns_lock())
        held.unlock();
    if (control)
        control->endWait();
}

bool tbiWait::isKilled() const
{
    return control && control->isToEnd();
}

bool tbiWait::isNudged() const
{
    return control && control->isNudged();
}
