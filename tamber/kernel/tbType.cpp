#include <tamber/kernel/tbType.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbVersion.h>
#include <tamber/kernel/tbiKernelLists.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiLockGuard.h>

#include <cctype>

namespace
{

constinit tbiStatic<tbTList<tbType*>> typeList; // in creation order, removal moves the last into the gap

// Three parallel lists of the classes that are registered and not yet set up.
constinit tbiStatic<tbTList<char*>> registeredTypes;
constinit tbiStatic<tbTList<tbType::InitClassFunc>> initClassFuncs;
constinit tbiStatic<tbTList<tbPlugIn*>> classPlugIns;

constexpr int LIST_CAPACITY = 64;

bool sameName(const char* a, const char* b)
{
    return tbStrcmp(a, b, true) == 0;
}

// Names compare without case, so their hash is taken of the name in lower case.
unsigned hashName(const char* name)
{
    char folded[64];
    std::size_t n = 0;
    for (; name[n] != 0 && n < sizeof folded - 1; ++n)
        folded[n] = char(std::tolower(static_cast<unsigned char>(name[n])));
    folded[n] = 0;
    return tbStrToInt(folded);
}

// Takes over the name; all or, when memory is out, nothing.
bool addRegistration(char* name, tbType::InitClassFunc initClassFunc, tbPlugIn* supplier)
{
    if (!name || registeredTypes->add(name) < 0)
        return false;
    if (initClassFuncs->add(initClassFunc) >= 0)
    {
        if (classPlugIns->add(supplier) >= 0)
            return true;
        initClassFuncs->removeLast();
    }
    registeredTypes->removeLast();
    return false;
}

void forgetRegistration(int i)
{
    registeredTypes->removeIndex(i);
    initClassFuncs->removeIndex(i);
    classPlugIns->removeIndex(i);
}

// Sets up the registered class of that name, last registration first. False when there is none.
bool initRegistered(const char* name)
{
    for (int i = registeredTypes->getNum() - 1; i >= 0; --i)
    {
        if (sameName((*registeredTypes)[i], name))
        {
            (*initClassFuncs)[i]((*classPlugIns)[i]);
            return true;
        }
    }
    return false;
}

tbType* lastTypeNamed(const char* name, unsigned hash)
{
    for (int i = typeList->getNum() - 1; i >= 0; --i)
    {
        tbType* type = (*typeList)[i];
        if (type->hasName(name, hash))
            return type;
    }
    return nullptr;
}

tbType* firstTypeNamed(const char* name, unsigned hash)
{
    for (tbType* type : *typeList)
        if (type->hasName(name, hash))
            return type;
    return nullptr;
}

} // namespace

tbType::tbType(tbType* parentType, const char* className, CreateFunc createFunction,
               RemoveFunc removeFunction, tbPlugIn* supplier)
    : name(nullptr),
      hash(hashName(className)),
      parent(parentType),
      plugIn(supplier),
      flags(WRITABLE),
      index(-1),
      createFunc(createFunction),
      removeFunc(removeFunction)
{
    tbiLockGuard guard(tbiLocks::type);
    if (parent)
        parent->children.add(this);
    if (plugIn)
        plugIn->addType(this);
    for (int i = 0; i < registeredTypes->getNum() && !name; ++i)
    {
        if (sameName((*registeredTypes)[i], className))
        {
            name = (*registeredTypes)[i];
            forgetRegistration(i);
        }
    }
    if (!name)
        name = tbiCopyText(className);
    index = typeList->add(this);
}

tbType::~tbType()
{
    tbiLockGuard guard(tbiLocks::type);
    if (removeFunc)
        removeFunc();
    if (parent)
        parent->children.checkRemoveOrdered(this);
    for (tbType* child : children)
    {
        child->parent = parent;
        if (parent)
            parent->children.add(child);
    }
    if (plugIn)
        plugIn->removeType(this);
    remove(this);
    index = -1;
    tbMemory::free(name);
}

// The type that moves into the gap keeps its index: it is what traits and statistics have been given.
void tbType::remove(tbType* type)
{
    typeList->checkRemove(type);
}

bool tbType::hasName(const char* className, unsigned nameHash) const
{
    return hash == nameHash && sameName(name, className);
}

void tbType::defineLocked(DefineFunc defineFunc, void* context, const char* className, CreateFunc create,
                          tbPlugIn* supplier, InitClassFunc initClassFunc)
{
    tbiLockGuard guard(tbiLocks::type);
    const tbiMemoryWatch memory;
    tbType* type = defineFunc(context, className, create, supplier);
    if (!type || !memory.ranOut())
        return;
    // Some list may lack it: it is registered again, with the name that it took over and in the room that it left.
    if (addRegistration(type->name, initClassFunc, supplier))
        type->name = nullptr;
    delete type;
}

void tbType::addInstance(tbBase* object)
{
    tbiLockGuard guard(tbiLocks::type);
    if (plugIn)
        plugIn->ref();
    // A parent type that was deleted and set up again is no parent of this one.
    if (parent && !parent->takeOut(object))
        for (tbType* type : *typeList)
            if (type->takeOut(object))
                break;
    object->instanceSlot = instances.add(object);
}

// The object knows its place, so nothing is searched. False when it is no instance of this exact type.
bool tbType::takeOut(tbBase* object)
{
    const int slot = object->instanceSlot;
    if (!instances.indexInRange(slot) || instances[slot] != object)
        return false;
    instances.removeIndex(slot);
    if (slot < instances.getNum())
        instances[slot]->instanceSlot = slot;
    object->instanceSlot = -1;
    return true;
}

bool tbType::removeInstance(tbBase* object)
{
    tbiLockGuard guard(tbiLocks::type);
    const bool found = takeOut(object);
    if (plugIn)
        plugIn->unRef();
    if ((flags & DELETE_WITH_LAST) != 0 && instances.getNum() == 0)
        delete this;
    return found;
}

void tbType::setWritable(bool writable)
{
    if (writable)
        flags |= WRITABLE;
    else
        flags &= ~WRITABLE;
}

bool tbType::deleteType()
{
    tbiLockGuard guard(tbiLocks::type);
    if (instances.getNum() > 0)
    {
        flags |= DELETE_WITH_LAST;
        return false;
    }
    delete this;
    return true;
}

void tbType::registerClass(const char* className, InitClassFunc initClassFunc, tbPlugIn* supplier)
{
    if (!className || !initClassFunc)
        return;
    tbiLockGuard guard(tbiLocks::type);
    char* name = tbiCopyText(className);
    if (!addRegistration(name, initClassFunc, supplier))
        tbMemory::free(name);
}

void tbType::unregisterClasses(const tbPlugIn* supplier)
{
    tbiLockGuard guard(tbiLocks::type);
    for (int i = registeredTypes->getNum() - 1; i >= 0; --i)
    {
        if ((*classPlugIns)[i] == supplier)
        {
            tbMemory::free((*registeredTypes)[i]);
            forgetRegistration(i);
        }
    }
}

void tbType::initClass(const char* className, InitClassFunc initClassFunc)
{
    tbiLockGuard guard(tbiLocks::type);
    if (!initRegistered(className))
        initClassFunc(nullptr);
}

tbType* tbType::findType(const char* className)
{
    if (!className)
        return nullptr;
    tbiLockGuard guard(tbiLocks::type);
    const unsigned nameHash = hashName(className);
    if (tbType* type = lastTypeNamed(className, nameHash))
        return type;
    return initRegistered(className) ? lastTypeNamed(className, nameHash) : nullptr;
}

const tbType* tbType::findTypeToCreate(const char* className)
{
    if (!className)
        return nullptr;
    tbiLockGuard guard(tbiLocks::type);
    const unsigned nameHash = hashName(className);
    if (const tbType* type = firstTypeNamed(className, nameHash))
        return type;
    return initRegistered(className) ? lastTypeNamed(className, nameHash) : nullptr;
}

tbBase* tbType::createInstance(const char* className)
{
    tbiLockGuard guard(tbiLocks::type);
    const tbType* type = findTypeToCreate(className);
    return type ? type->create() : nullptr;
}

// Under the lock, so that the constructors, each of which moves the object on to the type of its class, find it held.
tbBase* tbType::create() const
{
    tbiLockGuard guard(tbiLocks::type);
    const tbiMemoryWatch memory;
    tbBase* object = createFunc ? createFunc() : nullptr;
    return tbiWhole(object, memory);
}

int tbType::getNumTypes()
{
    tbiLockGuard guard(tbiLocks::type);
    return typeList->getNum();
}

tbType* tbType::getType(int i)
{
    tbiLockGuard guard(tbiLocks::type);
    return (*typeList)[i];
}

unsigned int tbType::getVersion() const
{
    return plugIn ? plugIn->getVersion() : tbGetVersion();
}

int tbType::getNum(bool recursive) const
{
    tbiLockGuard guard(tbiLocks::type);
    int n = instances.getNum();
    if (recursive)
        for (const tbType* child : children)
            n += child->getNum(true);
    return n;
}

tbBase* tbType::get(int i, bool recursive) const
{
    tbiLockGuard guard(tbiLocks::type);
    if (!recursive)
        return instances[i];
    if (i < 0)
        return nullptr;
    return at(i);
}

// Counts `i` down by every instance passed, so that one descent finds the one at `i`.
tbBase* tbType::at(int& i) const
{
    if (i < instances.getNum())
        return instances[i];
    i -= instances.getNum();
    for (const tbType* child : children)
        if (tbBase* object = child->at(i))
            return object;
    return nullptr;
}

tbBase* tbType::find(const char* objectName, const tbBase* after, bool recursive) const
{
    if (!objectName)
        return nullptr;
    tbiLockGuard guard(tbiLocks::type);
    bool passed = after == nullptr;
    return findNamed(objectName, after, recursive, passed);
}

tbBase* tbType::findNamed(const char* objectName, const tbBase* after, bool recursive, bool& passed) const
{
    for (tbBase* object : instances)
    {
        if (!object->getName() || !sameName(object->getName(), objectName))
            continue;
        if (passed)
            return object;
        passed = object == after;
    }
    if (recursive)
        for (const tbType* child : children)
            if (tbBase* object = child->findNamed(objectName, after, true, passed))
                return object;
    return nullptr;
}

void tbiReserveTypeLists()
{
    typeList->setSize(LIST_CAPACITY);
    registeredTypes->setSize(LIST_CAPACITY);
    initClassFuncs->setSize(LIST_CAPACITY);
    classPlugIns->setSize(LIST_CAPACITY);
}

void tbiReleaseTypeLists()
{
    // Derived classes were made after their parents.
    while (typeList->getNum() > 0)
        delete (*typeList)[typeList->getNum() - 1];
    for (char* name : *registeredTypes)
        tbMemory::free(name);
    typeList->setSize(0);
    registeredTypes->setSize(0);
    initClassFuncs->setSize(0);
    classPlugIns->setSize(0);
}
