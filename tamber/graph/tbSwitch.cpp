#include <tamber/graph/tbSwitch.h>

#include <tamber/audio/tbListener.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/display/tbCamera.h>
#include <tamber/graph/tbScene.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

#include <algorithm>
#include <cstring>

TB_DEFINE_NODE_CLASS(tbSwitch, tbGroup)

namespace
{

constexpr int FIRST_CAPACITY = 4;
constexpr int STEP_OF_ADD = 4;
constexpr int STEP_OF_INSERT = 2;

} // namespace

tbSwitch::tbSwitch()
{
    initInstance();
    reserveStates(FIRST_CAPACITY, FIRST_CAPACITY);
}

tbSwitch::tbSwitch(const tbSwitch& other) : tbGroup(other)
{
    initInstance();
    reserveStates(FIRST_CAPACITY, FIRST_CAPACITY);
    assign(other);
}

tbSwitch::tbSwitch(const tbSwitch& other, Disposable disposable)
    : tbGroup(other, disposable),
      switchFlags(other.switchFlags),
      transitionFraction(other.transitionFraction),
      transitionStart(other.transitionStart),
      transitionTime(other.transitionTime)
{
}

tbSwitch& tbSwitch::operator=(const tbSwitch& other)
{
    if (this != &other)
    {
        tbGroup::operator=(other);
        assign(other);
    }
    return *this;
}

tbSwitch::~tbSwitch()
{
    deleteInstance();
    removeChildren();
    tbMemory::free(activeStates);
}

void tbSwitch::assign(const tbSwitch& other)
{
    switchFlags = other.switchFlags;
    transitionTime = other.transitionTime;
    transitionStart = other.transitionStart;
    transitionFraction = other.transitionFraction;
}

void tbSwitch::copyStates(const tbSwitch& other)
{
    if (reserveStates(std::max(other.activeCapacity, getNumChildren()), 1))
        std::memcpy(activeStates, other.activeStates, std::size_t(other.activeCapacity));
}

// The children come first: adding them sets states of its own.
void tbSwitch::copy(const tbSwitch& other)
{
    tbGroup::copy(other);
    assign(other);
    copyStates(other);
}

void tbSwitch::clone(const tbSwitch& other)
{
    tbGroup::clone(other);
    assign(other);
    copyStates(other);
}

tbBase* tbSwitch::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbSwitch::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbSwitch(*this, Disposable{arena});
}

tbGroup* tbSwitch::copyGroup() const
{
    return makeLike(this, &tbSwitch::copy);
}

tbGroup* tbSwitch::cloneGroup() const
{
    return makeLike(this, &tbSwitch::clone);
}

// Room for `count` states, taken in steps of `step`; new states are 0.
bool tbSwitch::reserveStates(int count, int step)
{
    int wanted = activeCapacity;
    while (wanted < count)
        wanted += step;
    if (wanted == activeCapacity)
        return true;
    void* block = tbMemory::realloc(activeStates, std::size_t(wanted));
    if (!block)
        return false;
    activeStates = static_cast<unsigned char*>(block);
    std::memset(activeStates + activeCapacity, 0, std::size_t(wanted - activeCapacity));
    activeCapacity = wanted;
    return true;
}

// States change before the child comes or goes: what is told of it may select children, or edit this switch again.
bool tbSwitch::addChild(tbGroup* child)
{
    const int n = getNumChildren();
    if (!reserveStates(n + 1, STEP_OF_ADD))
        return false;
    const unsigned char before = activeStates[n];
    activeStates[n] = n == 0 ? STATE_ON : STATE_OFF;
    if (tbGroup::addChild(child))
        return true;
    activeStates[n] = before;
    return false;
}

// The last state is not carried along: the new last child takes the byte that stood behind it. Files and programs
// rely on which children come out visible.
bool tbSwitch::insertChild(int i, tbGroup* child)
{
    const int n = getNumChildren();
    if (n + 1 >= activeCapacity && !reserveStates(n + 2, STEP_OF_INSERT))
        return false;
    if (i < 0 || i >= n)
        return tbGroup::insertChild(i, child);
    unsigned char* place = activeStates + i;
    const std::size_t moved = std::size_t(n - 1 - i);
    const unsigned char last = activeStates[n - 1];
    std::memmove(place + 1, place, moved);
    *place = STATE_OFF;
    if (tbGroup::insertChild(i, child))
        return true;
    std::memmove(place, place + 1, moved);
    activeStates[n - 1] = last;
    return false;
}

bool tbSwitch::removeChild(tbGroup* child)
{
    const int n = getNumChildren();
    const int i = getChildIndex(child);
    if (i >= 0 && n <= activeCapacity)
        std::memmove(activeStates + i, activeStates + i + 1, std::size_t(n - i - 1));
    return tbGroup::removeChild(child);
}

bool tbSwitch::areChildrenOrdered() const
{
    return true;
}

void tbSwitch::removeSceneUpdate(tbScene* scene)
{
    scene->removeDirectCall(tbScene::DIRECT_UPDATE_BEFORE, this);
}

bool tbSwitch::isActive(int i) const
{
    return i >= 0 && i < getNumChildren() && i < activeCapacity && activeStates[i] != STATE_OFF;
}

void tbSwitch::startTransition()
{
    transitionStart = 0.0f;
    switchFlags |= RUNNING;
}

bool tbSwitch::selectChild(int i)
{
    const int n = getNumChildren();
    if (i < 0 || i >= n)
        return false;
    if (isTransitionEnabled())
    {
        for (int child = 0; child < n; ++child)
            activeStates[child] = activeStates[child] == STATE_ON ? STATE_FADING : STATE_OFF;
        startTransition();
    }
    else
        std::memset(activeStates, STATE_OFF, std::size_t(n));
    activeStates[i] = STATE_ON;
    return true;
}

bool tbSwitch::selectChild(int i, bool on)
{
    if (i < 0 || i >= getNumChildren())
        return false;
    unsigned char& state = activeStates[i];
    const unsigned char before = state;
    state = on ? STATE_ON : STATE_OFF;
    if (!isTransitionEnabled())
        return true;
    if (!on && before == STATE_ON)
    {
        state = STATE_FADING;
        startTransition();
    }
    else if (on && before == STATE_OFF)
        startTransition();
    else
        stopTransition(); // also one that other children are in: those that fade stay as they are, unseen
    return true;
}

void tbSwitch::allOn()
{
    setAll(STATE_ON);
}

void tbSwitch::allOff()
{
    setAll(STATE_OFF);
}

void tbSwitch::setAll(STATE state)
{
    std::memset(activeStates, state, std::size_t(getNumChildren()));
    if (isTransitionEnabled())
    {
        transitionStart = 0.0f;
        stopTransition();
    }
}

void tbSwitch::enableTransition(bool enable)
{
    if (enable == isTransitionEnabled())
        return;
    if (enable)
        switchFlags |= TRANSITIONS;
    else
    {
        transitionFraction = 0.0f;
        transitionStart = 0.0f;
        switchFlags &= ~TRANSITIONS;
    }
    dirtyUp(TF_UPDATE);
}

void tbSwitch::setTransitionTime(float seconds)
{
    transitionTime = seconds;
    if (!(seconds > 0.0f))
        enableTransition(false);
}

void tbSwitch::update(tbTravContext* context)
{
    tbScene* scene = context->getScene();
    if (scene && anyTravFlags(TF_UPDATE))
    {
        if (isTransitionEnabled())
            scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, this);
        else
            removeSceneUpdate(scene);
    }
    tbGroup::update(context);
}

void tbSwitch::updateDirect(tbScene*, bool)
{
    if (!fades())
        return;
    const float now = float(tbGetTime());
    if (transitionStart <= 0.0f)
    {
        transitionStart = now;
        transitionFraction = 0.0f;
        return;
    }
    const float passed = now - transitionStart;
    if (passed < transitionTime)
    {
        transitionFraction = passed / transitionTime;
        return;
    }
    transitionFraction = 1.0f;
    stopTransition();
    std::replace(activeStates, activeStates + std::min(getNumChildren(), activeCapacity),
                 static_cast<unsigned char>(STATE_FADING), static_cast<unsigned char>(STATE_OFF));
}

template <class Walker>
void tbSwitch::walkChildren(Walker* walker, STATE state) const
{
    const std::span<tbGroup* const> nodes = getChildren();
    const std::size_t n = std::min(nodes.size(), std::size_t(activeCapacity));
    for (std::size_t i = 0; i < n; ++i)
        if ((activeStates[i] & state) != 0)
            nodes[i]->apply(walker);
}

template <class Walker>
void tbSwitch::walk(Walker* walker) const
{
    tbTravContext* context = walker->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    if (!fades())
    {
        // Both stay set behind this switch: what is drawn after it without a switch of its own is drawn normally.
        context->setTransitionScale(1.0f);
        context->setTransitionMode(tbTransition::TRANSITION_NONE);
        walkChildren(walker, STATE_ON);
        return;
    }
    const float scale = context->getTransitionScale();
    const tbTransition::MODE mode = context->getTransitionMode();
    context->setTransitionMode(tbTransition::TRANSITION_OUT);
    context->setTransitionScale(1.0f - transitionFraction);
    walkChildren(walker, STATE_FADING);
    context->setTransitionMode(tbTransition::TRANSITION_IN);
    context->setTransitionScale(transitionFraction);
    walkChildren(walker, STATE_ON);
    context->setTransitionScale(scale);
    context->setTransitionMode(mode);
}

void tbSwitch::apply(tbCamera* camera) const
{
    walk(camera);
}

void tbSwitch::apply(tbListener* listener) const
{
    walk(listener);
}

void tbSwitch::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    const tbiGroupScope onPath(context, this);
    walkChildren(collider, STATE_ON);
}

tbEntry* tbSwitch::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (!entry)
        return nullptr;
    const int stored = entry->readCount(1);
    const int n = getNumChildren();
    if (!reserveStates(n, STEP_OF_ADD))
        return nullptr;
    std::fill(activeStates, activeStates + activeCapacity, static_cast<unsigned char>(STATE_OFF));
    for (int i = 0; i < stored; ++i)
    {
        const auto state = static_cast<unsigned char>(entry->readByte());
        if (i < n)
            activeStates[i] = state;
    }
    switchFlags = unsigned(entry->readInt()) & (TRANSITIONS | RUNNING);
    transitionFraction = entry->readFloat();
    transitionStart = entry->readFloat();
    transitionTime = entry->readFloat();
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* tbSwitch::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    if (!entry)
        entry = created;
    if (!entry)
        return nullptr;
    const int n = std::min(getNumChildren(), activeCapacity);
    entry->writeInt(n);
    for (int i = 0; i < n; ++i)
        entry->writeByte(char(activeStates[i]));
    entry->writeInt(int(switchFlags));
    entry->writeFloat(transitionFraction);
    entry->writeFloat(transitionStart);
    entry->writeFloat(transitionTime);
    return created;
}
