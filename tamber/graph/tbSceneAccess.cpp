// How threads share a scene. All state is kept under the access lock, which an editor holds for the whole edit: new
// queries wait there. An editor that meets open queries gives up its turn, and the last query hands it back.
#include "tbScene.h"

#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbiLockGuard.h>

void tbScene::acquireForMods()
{
    if (!accessLock || !modsSemaphore)
    {
        editing = true;
        return;
    }
    for (;;)
    {
        modsSemaphore->dec();
        accessLock->acquire();
        if (queryCount == 0 || !tbSemaphore::isEnabled())
        {
            editing = true;
            return;
        }
        editorWaits = true;
        accessLock->release();
    }
}

void tbScene::releaseFromMods()
{
    if (!accessLock || !modsSemaphore)
    {
        editing = false;
        return;
    }
    accessLock->acquire();
    const bool wasEditing = editing;
    editing = false;
    accessLock->release();
    if (!wasEditing)
        return;
    accessLock->release();
    modsSemaphore->inc();
}

void tbScene::acquireForQuery()
{
    const tbiLockGuard guard(accessLock.get());
    ++queryCount;
}

void tbScene::releaseFromQuery()
{
    const tbiLockGuard guard(accessLock.get());
    if (queryCount > 0 && --queryCount == 0 && editorWaits)
    {
        editorWaits = false;
        modsSemaphore->inc();
    }
}

// tbLock::available() takes the lock when it can.
bool tbScene::isAccessFree() const
{
    if (!accessLock)
        return true;
    if (!accessLock->available())
        return false;
    accessLock->release();
    return true;
}

bool tbScene::availableForMods()
{
    return isAccessFree();
}

bool tbScene::availableForQuery()
{
    return isAccessFree();
}
