#include <tamber/kernel/tbBase.h>

#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/thread/tbThread.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>
#include <cassert>
#include <cstring>

constinit std::atomic<tbType*> tbBase::classType{nullptr};
constinit std::atomic<int> tbBase::numRemainingDels{0};

namespace
{

// Objects whose last reference went while this thread runs a destructor. A plain pointer: a thread-local object
// with a destructor would keep the library from being unloaded.
thread_local constinit tbTList<tbBase*>* waitingForDestruction = nullptr;

} // namespace

tbBase::tbBase()
{
    initInstance();
}

tbBase::tbBase(const tbBase& other) : tbMemory(other), flags(other.flags)
{
    setName(other.name);
    initInstance();
}

tbBase::tbBase(const tbBase& other, Disposable disposable) : flags(other.flags)
{
    if (!other.name)
        return;
    const std::size_t bytes = std::strlen(other.name) + 1;
    name = static_cast<char*>(disposable.arena->malloc(bytes));
    if (name)
        std::memcpy(name, other.name, bytes);
}

tbBase& tbBase::operator=(const tbBase& other)
{
    if (this != &other)
    {
        setName(other.name);
        flags = other.flags;
    }
    return *this;
}

bool tbBase::operator==(const tbBase& other) const
{
    if (flags != other.flags || !name != !other.name)
        return false;
    return !name || std::strcmp(name, other.name) == 0;
}

tbBase::~tbBase()
{
    deleteInstance();
    if (attributes)
    {
        for (int i = attributes->getNum() - 1; i >= 0; --i)
            (*attributes)[i]->unRef();
        delete attributes;
    }
    tbMemory::free(name);
}

tbBase* tbBase::createCopy() const
{
    return nullptr;
}

tbType* tbBase::getType() const
{
    return getClassType();
}

void tbBase::ref()
{
    if (!isLeaving())
        refNoCheck();
}

void tbBase::unRef()
{
    if (isLeaving())
        return;
    const int count = refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (count >= 1)
        return;
    assert(count >= -1 && "released more often than referenced");
    if (leaving.exchange(true, std::memory_order_acq_rel))
        return;
    if (tbThread::getTotalDownstreamThreads() == 0 || !defer())
        destroy(this);
}

// Decides under the lock; what is deleted at once is deleted after it.
bool tbBase::defer()
{
    tbiLockGuard guard(tbiLocks::base);
    numRemainingDels.fetch_add(1, std::memory_order_relaxed);
    if (tbThread::postDeleteReference(this))
        return true;
    numRemainingDels.fetch_sub(1, std::memory_order_relaxed);
    return false;
}

void tbBase::destroy(tbBase* object)
{
    if (waitingForDestruction)
    {
        if (waitingForDestruction->add(object) < 0)
            delete object;
        return;
    }
    tbTList<tbBase*> waiting;
    waitingForDestruction = &waiting;
    delete object;
    std::reverse(waiting.begin(), waiting.end());
    while (waiting.getNum() > 0)
    {
        tbBase* next = waiting.removeLast();
        const int below = waiting.getNum();
        delete next;
        // What `next` released comes before what waited already, in the order in which it was released.
        std::reverse(waiting.begin() + below, waiting.end());
    }
    waitingForDestruction = nullptr;
}

void tbBase::markDeleted(tbBase* object)
{
    numRemainingDels.fetch_sub(1, std::memory_order_relaxed);
    destroy(object);
}

void tbBase::enableDynamic(bool dynamic)
{
    flags = std::uint16_t(dynamic ? flags | DYNAMIC : flags & ~DYNAMIC);
}

tbBase* tbBase::createDisposableCopy(tbArena*) const
{
    return nullptr;
}

void tbBase::initRenderContext(tbRenderContext*) const {}

void tbBase::setName(const char* text)
{
    tbiSetText(name, text);
}

void tbBase::addAttribute(tbBase* attribute)
{
    if (!attribute)
        return;
    if (!attributes)
    {
        attributes = new tbTList<tbBase*>;
        if (!attributes)
            return;
    }
    if (attributes->add(attribute) >= 0)
        attribute->ref();
}

void tbBase::deleteInstance()
{
    getType()->removeInstance(this);
}

void tbBase::registerClass(tbPlugIn* plugIn)
{
    if (!classType.load())
        tbType::registerClass("tbBase", &tbBase::initClass, plugIn);
}

void tbBase::initClass(tbPlugIn* plugIn)
{
    tbiLockGuard guard(tbiLocks::type);
    if (!classType.load())
        classType.store(new tbType(nullptr, "tbBase", &tbBase::createInstance, &tbBase::removeClass, plugIn));
}

void tbBase::removeClass()
{
    classType.store(nullptr);
}

void tbBase::initInstance()
{
    getClassType()->addInstance(this);
}

int tbBase::getNum(bool recursive)
{
    return classType.load() ? classType.load()->getNum(recursive) : 0;
}

tbBase* tbBase::get(int i, bool recursive)
{
    return classType.load() ? classType.load()->get(i, recursive) : nullptr;
}

tbBase* tbBase::find(const char* objectName, tbBase* after, bool recursive)
{
    return classType.load() ? classType.load()->find(objectName, after, recursive) : nullptr;
}

tbBase* tbBase::import(const char* fileName)
{
    return tbImportOfType(fileName, getClassType());
}

tbBase* tbBase::createInstance()
{
    return new tbBase;
}
