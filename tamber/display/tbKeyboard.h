#pragma once

#include <tamber/thread/tbQueue.h>

class tbWindow;

// One key event.
struct tbKeyboardData
{
    tbWindow* window;
    bool down;
    int key;  // the window system's key code
    int code; // the window system's second code, as it came
};

// The queue of key events between the window system's thread and the application's. When it is full, each new event
// takes the place of the oldest.
class TB_API tbKeyboard : public tbQueue
{
    TB_CLASS(tbKeyboard, tbQueue)

public:
    tbKeyboard();
    tbKeyboard(const tbKeyboard& other);

    using tbQueue::get;
    using tbQueue::sample;
    tbBase* createCopy() const override;

    /// Called by the window. A release is dropped (false) unless key-up events are collected.
    virtual bool set(tbWindow* window, int key, int code, bool down);
    /// Copies the oldest event, which stays in the queue; false when there is none.
    virtual bool sample(tbKeyboardData& data) const;
    /// The number of living keyboards. It says nothing about waiting events, unlike tbMouse::test(): programs use it
    /// to ask whether there is a keyboard at all.
    virtual int test() const;
    virtual void collectKeyUpEvents(bool collect);

protected:
    ~tbKeyboard() override;

private:
    bool collectsKeyUps = false;
};
