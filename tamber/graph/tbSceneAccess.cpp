// How threads share a scene. All state is kept under the access lock, which an editor holds for the whole edit: new
// queries wait there. An editor that meets open queries gives up its turn, and the last query hands it back.
#include "tbScene.h"

#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>

void tbScene::acquireForMods()
{
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
    accessLock->acquire();
    ++queryCount;
    accessLock->release();
}

void tbScene::releaseFromQuery()
{
    accessLock->acquire();
    if (queryCount > 0 && --queryCount == 0 && editorWaits)
    {
        editorWaits = false;
        modsSemaphore->inc();
    }
    accessLock->release();
}

// tbLock::available() takes the lock when it can.
bool tbScene::isAccessFree() const
{
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
