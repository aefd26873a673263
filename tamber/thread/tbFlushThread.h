#pragma once

#include <tamber/action/tbAction.h>

class tbSemaphore;

// A request that travels through a thread's work queue: the thread has every downstream thread flush its queue, then
// applies the request. Whoever posted it can wait for that.
class TB_API tbFlushThread : public tbAction
{
    TB_CLASS(tbFlushThread, tbAction)

public:
    tbFlushThread();
    tbFlushThread(const tbFlushThread& other);
    tbFlushThread& operator=(const tbFlushThread& other);

    /// Runs on the flushed thread: syncApply(), then the waiting thread goes on, then postSyncApply(). True.
    bool apply(tbBase* initiator, tbEvent* event) override;
    /// Done while the poster still waits; nothing here.
    virtual void syncApply(tbBase* initiator);
    /// Done when the poster may go on already; nothing here.
    virtual void postSyncApply(tbBase* initiator);
    /// Waits until the request has been applied, or dropped with the thread that it was posted to; one wait for each
    /// time that it was posted.
    void waitForSyncToFinish();

    tbBase* createCopy() const override;

protected:
    ~tbFlushThread() override;

private:
    friend class tbThread;

    /// Lets go one wait.
    void finish();

    tbSemaphore* finished; // null when there was no memory for it: nobody waits
};
