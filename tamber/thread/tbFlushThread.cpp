#include <tamber/thread/tbFlushThread.h>

#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbSemaphore.h>

TB_DEFINE_SERVICE_CLASS(tbFlushThread, tbAction)

tbFlushThread::tbFlushThread() : finished(new tbSemaphore(0, 1))
{
    if (finished)
        finished->ref();
    initInstance();
}

tbFlushThread::tbFlushThread(const tbFlushThread& other) : tbAction(other), finished(new tbSemaphore(0, 1))
{
    if (finished)
        finished->ref();
    initInstance();
}

tbFlushThread& tbFlushThread::operator=(const tbFlushThread& other)
{
    tbAction::operator=(other);
    return *this;
}

tbFlushThread::~tbFlushThread()
{
    deleteInstance();
    if (finished)
        finished->unRef();
}

tbBase* tbFlushThread::createCopy() const
{
    return tbiCopyOf(*this);
}

bool tbFlushThread::apply(tbBase* initiator, tbEvent*)
{
    syncApply(initiator);
    finish();
    postSyncApply(initiator);
    return true;
}

void tbFlushThread::syncApply(tbBase*) {}

void tbFlushThread::postSyncApply(tbBase*) {}

void tbFlushThread::waitForSyncToFinish()
{
    if (finished)
        finished->dec();
}

void tbFlushThread::finish()
{
    if (finished)
        finished->inc();
}
