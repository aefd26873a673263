#include <tamber/kernel/tbInit.h>

#include <tamber/display/tbRenderContext.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbSettings.h>
#include <tamber/kernel/tbiAppThread.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMessages.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbThread.h>

#include <atomic>

namespace
{

constinit bool tbiInitialized = false;
constinit int tbiNumTextureUnits = 1;
constinit HINSTANCE appHandle = nullptr;
constinit std::atomic<tbThread*> appThread{nullptr};
constinit const void* appThreadMark = nullptr;
// Its address tells threads apart.
thread_local constinit char threadMark = 0;

} // namespace

void tbInit(HINSTANCE app)
{
    appHandle = app;
    if (tbiInitialized)
        return;
    tbiInitialized = true;
    tbiSendKeptMessages();
    tbPlugIn::makeDynamicFromNowOn();
    tbLoader::initLoaders();
}

void tbShutdown()
{
    tbiReleaseAppThread();
    for (int i = tbRenderContext::getNumRenderContexts() - 1; i >= 0; --i)
        if (tbRenderContext* context = tbRenderContext::getRenderContext(i))
            context->close();
    tbiLocks::release();
}

HINSTANCE tbGetWindowsAppHandle()
{
    return appHandle;
}

int tbGetNumTextureUnits()
{
    return tbiNumTextureUnits;
}

tbThread* tbGetAppThread()
{
    return appThread.load(std::memory_order_acquire);
}

bool tbInAppThread()
{
    return &threadMark == appThreadMark;
}

void tbiReadNumTextureUnits()
{
    if (!tbReadRegistry("NumTextureUnits", tbiNumTextureUnits))
        tbiNumTextureUnits = 1;
}

void tbiRecordAppThread()
{
    appThreadMark = &threadMark;
}

void tbiAdoptAppThread()
{
    const tbiMemoryWatch memory;
    tbThread* thread = tbiWhole(new tbThread(true), memory);
    if (!thread)
        return;
    thread->ref();
    appThread.store(thread, std::memory_order_release);
}

void tbiReleaseAppThread()
{
    tbThread* thread = tbGetAppThread();
    if (!thread)
        return;
    for (int i = 0; i < thread->getNumDownstreamThreads(); ++i)
        thread->getDownstreamThread(i)->flushQueue();
    thread->processQueue(true);
    appThread.store(nullptr, std::memory_order_release);
    thread->unRef();
}
