// What happens when the library is loaded and unloaded, in order, in one object. Every other library-wide value is
// constant-initialised and has no destructor, so no order between source files matters.
#include <tamber/collide/tbiColliderContext.h>
#include <tamber/display/tbiDisplayLists.h>
#include <tamber/graph/tbiGraphLists.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/kernel/tbiAppThread.h>
#include <tamber/kernel/tbiClasses.h>
#include <tamber/kernel/tbiClock.h>
#include <tamber/kernel/tbiKernelLists.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMessages.h>
#include <tamber/kernel/tbiRelease.h>
#include <tamber/kernel/tbiSqrtTable.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbThread.h>
#include <tamber/thread/tbTimer.h>
#include <tamber/thread/tbiThreadRecord.h>
#include <tamber/trav/tbiTravLists.h>

#include <cstdlib>
#include <ctime>

namespace
{

class Kernel
{
public:
    Kernel()
    {
        tbiFormatSignature();
        tbMemory::initClass();
        tbiReserveTypeLists();
        tbiReservePlugInLists();
        tbiKeepMessages();
        makePlugIn();
        tbBase::initClass(plugIn);
        tbLock::initClass(plugIn);
        startUp();
        tbiStopKeepingMessages();
        tbiLocks::create();
    }

    ~Kernel()
    {
        tbThread::stopAll();
        tbiReleaseAppThread();
        tbPlugIn::unloadAll();
        tbDeleteFilePaths();
        tbiReleaseColliderContext();
        tbiReleaseTravLists();
        tbiReleaseGraphLists();
        tbiReleaseDisplayLists();
        tbiFreeSqrtTable();
        tbiLocks::release();
        tbiReleaseTypeLists();
        delete plugIn;
        tbiReleasePlugInLists();
        tbiReleaseArenaLists();
        tbiDropKeptMessages();
        tbiThreadRecord::freeOwn();
    }

    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;

private:
    void makePlugIn()
    {
        plugIn = new tbPlugIn("tbKernel.dll");
        plugIn->setName("Kernel");
        plugIn->setCompany(tbiRelease::COMPANY);
        plugIn->setRelease(tbiRelease::MAJOR, tbiRelease::MINOR, tbiRelease::BUILD, tbiRelease::DATE);
    }

    void startUp()
    {
        tbiReadNumTextureUnits();
        tbSetSqrtMethod(TBSQRT_TABLE_4K);
        std::srand(static_cast<unsigned>(std::time(nullptr)));
        tbiRecordAppThread();
        tbiStartClock();
        tbTimer::initClass();
        tbiInitClasses(plugIn);
        tbiRegisterClasses(plugIn);
        tbiAdoptAppThread();
    }

    tbPlugIn* plugIn = nullptr;
};

Kernel kernel;

} // namespace
