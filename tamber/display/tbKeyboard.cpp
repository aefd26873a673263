#include <tamber/display/tbKeyboard.h>

#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_SERVICE_CLASS(tbKeyboard, tbQueue)

namespace
{

constexpr int NUM_KEYBOARD_EVENTS = 50;

} // namespace

tbKeyboard::tbKeyboard() : tbQueue(int(sizeof(tbKeyboardData)), NUM_KEYBOARD_EVENTS)
{
    initInstance();
}

tbKeyboard::tbKeyboard(const tbKeyboard& other) : tbQueue(other), collectsKeyUps(other.collectsKeyUps)
{
    initInstance();
}

tbKeyboard::~tbKeyboard()
{
    deleteInstance();
}

tbBase* tbKeyboard::createCopy() const
{
    return tbiCopyOf(*this);
}

bool tbKeyboard::set(tbWindow* window, int key, int code, bool down)
{
    if (!down && !collectsKeyUps)
        return false;
    const tbKeyboardData event = {window, down, key, code};
    return put(&event);
}

bool tbKeyboard::sample(tbKeyboardData& data) const
{
    return tbQueue::sample(&data);
}

int tbKeyboard::test() const
{
    return getNum(true);
}

void tbKeyboard::collectKeyUpEvents(bool collect)
{
    collectsKeyUps = collect;
}
