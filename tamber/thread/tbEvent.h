#pragma once

#include <tamber/kernel/tbBase.h>

#include <condition_variable>
#include <mutex>

class tbAction;
class tbActionNode;
class tbLock;

// A named trigger: wakes the threads that wait for it and runs the actions that are attached to it.
class TB_API tbEvent : public tbBase
{
    TB_CLASS(tbEvent, tbBase)

public:
    tbEvent();
    /// Takes the actions, the action nodes, the time, the initiator and whether the event is enabled.
    tbEvent(const tbEvent& other);
    tbEvent& operator=(const tbEvent& other);

    /// Wakes the threads that wait at this moment. When the event is enabled, notes time and initiator and applies
    /// the actions and then the action nodes, in order, as they are when it begins. Holds the event's lock.
    virtual void trigger(tbBase* initiator);
    /// Triggers, so that one event can be an action of another's.
    virtual bool apply(tbBase* initiator, tbEvent* event);
    /// Waits up to `timeOut` milliseconds, -1 for ever, for the next trigger; false when it did not come.
    virtual bool waitForTrigger(int timeOut) const;
    virtual bool waitForTrigger() const;
    virtual void enable(bool enable);
    /// Takes a reference; null is ignored.
    virtual void addAction(tbAction* action);
    void addAction(tbActionNode* node);

    static void trigger(tbEvent* event, tbBase* initiator);
    /// The first event of that name, else a new one, count 0; null for no name.
    static tbEvent* findOrCreate(const char* name);

    bool isEnabled() const { return enabled.load(std::memory_order_relaxed); }
    int getNumActions() const;
    /// Null outside the range.
    tbAction* getAction(int i) const;
    int getNumActionNodes() const;
    /// Null outside the range.
    tbActionNode* getActionNode(int i) const;
    /// tbGetTime() of the last trigger, 0 before.
    double getTime() const;
    /// What the last trigger was given. Not referenced: it may be gone.
    tbBase* getInitiator() const;

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    ~tbEvent() override;

private:
    void pulse();
    void takeOver(const tbEvent& other);
    void releaseActions();

    double time = 0;
    tbBase* initiator = nullptr;
    tbTList<tbAction*> actions{4};
    tbTList<tbActionNode*> actionNodes;
    tbLock* lock;
    mutable std::mutex mutex; // guards the pulses only
    mutable std::condition_variable pulsed;
    std::uint64_t pulses = 0;
    std::atomic<bool> enabled{true};
};
