#include <tamber/display/tbKeyboard.h>

TB_DEFINE_SERVICE_CLASS(tbKeyboard, tbQueue)

namespace
{

constexpr int NUM_KEYBOARD_EVENTS = 50;

} // namespace

tbKeyboard::tbKeyboard() : tbQueue(int(sizeof(tbKeyboardData)), NUM_KEYBOARD_EVENTS)
{
    initInstance();
}

tbKeyboard::~tbKeyboard()
{
    deleteInstance();
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
