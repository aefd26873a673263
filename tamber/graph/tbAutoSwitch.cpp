#include <tamber/graph/tbAutoSwitch.h>

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbiPropagation.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_NODE_CLASS(tbAutoSwitch, tbSwitch)

tbAutoSwitch::tbAutoSwitch()
{
    initInstance();
    iterator.reset();
}

tbAutoSwitch::tbAutoSwitch(const tbAutoSwitch& other)
    : tbSwitch(other),
      enabled(other.enabled),
      iterator(other.iterator)
{
    initInstance();
}

// The arrays of the iterator stay with the source: a disposable copy runs no destructor.
tbAutoSwitch::tbAutoSwitch(const tbAutoSwitch& other, Disposable disposable)
    : tbSwitch(other, disposable),
      enabled(other.enabled)
{
}

tbAutoSwitch& tbAutoSwitch::operator=(const tbAutoSwitch& other)
{
    tbSwitch::operator=(other);
    enabled = other.enabled;
    iterator = other.iterator;
    return *this;
}

tbAutoSwitch::~tbAutoSwitch()
{
    deleteInstance();
    removeChildren();
}

tbBase* tbAutoSwitch::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbAutoSwitch::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbAutoSwitch(*this, Disposable{arena});
}

tbGroup* tbAutoSwitch::copyGroup() const
{
    return makeLike(this, &tbAutoSwitch::copy);
}

tbGroup* tbAutoSwitch::cloneGroup() const
{
    return makeLike(this, &tbAutoSwitch::clone);
}

void tbAutoSwitch::copy(const tbAutoSwitch& other)
{
    isFilling = true;
    tbSwitch::copy(other);
    isFilling = false;
    enabled = other.enabled;
    iterator = other.iterator;
}

void tbAutoSwitch::clone(const tbAutoSwitch& other)
{
    isFilling = true;
    tbSwitch::clone(other);
    isFilling = false;
    enabled = other.enabled;
    iterator = other.iterator;
}

void tbAutoSwitch::enable(bool on)
{
    enabled = on;
}

void tbAutoSwitch::pause()
{
    iterator.pause();
}

void tbAutoSwitch::resume()
{
    iterator.resume();
}

void tbAutoSwitch::setMode(tbIterator::MODE mode)
{
    iterator.setMode(mode);
    iterator.setNumItems(getNumChildren());
}

void tbAutoSwitch::setDirection(tbIterator::DIRECTION direction)
{
    iterator.setDirection(direction);
}

void tbAutoSwitch::setCycle(tbIterator::CYCLE cycle)
{
    iterator.setCycle(cycle);
}

void tbAutoSwitch::reset()
{
    iterator.reset();
}

void tbAutoSwitch::setTime(float seconds)
{
    iterator.setTime(seconds);
}

void tbAutoSwitch::setChildTime(int i, float seconds)
{
    iterator.setItemTime(i, seconds);
}

void tbAutoSwitch::setChildTime(float seconds)
{
    iterator.setItemTime(seconds);
}

void tbAutoSwitch::setFrameCount(int frames)
{
    iterator.setFrameCount(frames);
}

void tbAutoSwitch::setChildFrameCount(int i, int frames)
{
    iterator.setItemFrameCount(i, frames);
}

void tbAutoSwitch::setChildFrameCount(int frames)
{
    iterator.setItemFrameCount(frames);
}

// Gives each item its time anew, which takes as long as there are items.
void tbAutoSwitch::countChildren()
{
    if (!isFilling)
        iterator.setNumItems(getNumChildren());
}

bool tbAutoSwitch::addChild(tbGroup* child)
{
    const tbiKeep keepThis(this);
    const bool added = tbSwitch::addChild(child);
    countChildren();
    return added;
}

bool tbAutoSwitch::insertChild(int i, tbGroup* child)
{
    const tbiKeep keepThis(this);
    const bool inserted = tbSwitch::insertChild(i, child);
    countChildren();
    return inserted;
}

// The number of items stays: whoever takes children away while it plays sets times anew.
bool tbAutoSwitch::removeChild(tbGroup* child)
{
    const int i = getChildIndex(child);
    const int current = iterator.getSelectedItem();
    if (i >= 0 && current >= 0)
    {
        if (i == current)
            enabled = false;
        else if (i < current)
            iterator.setSelectedItem(current - 1);
    }
    return tbSwitch::removeChild(child);
}

void tbAutoSwitch::update(tbTravContext* context)
{
    tbScene* scene = context->getScene();
    if (scene && anyTravFlags(TF_UPDATE))
        scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, this);
    tbGroup::update(context);
}

void tbAutoSwitch::updateDirect(tbScene* scene, bool before)
{
    if (enabled && !iterator.isPaused())
    {
        const int i = iterator.update();
        if (i >= 0 && !isActive(i))
            selectChild(i);
    }
    tbSwitch::updateDirect(scene, before);
}

void tbAutoSwitch::apply(tbCamera* camera) const
{
    if (enabled)
        tbSwitch::apply(camera);
}

void tbAutoSwitch::apply(tbListener* listener) const
{
    if (enabled)
        tbSwitch::apply(listener);
}

void tbAutoSwitch::apply(tbCollider* collider) const
{
    if (enabled)
        tbSwitch::apply(collider);
}

tbEntry* tbAutoSwitch::read(tbFile* file, tbEntry* entry)
{
    isFilling = true;
    entry = tbSwitch::read(file, entry);
    isFilling = false;
    countChildren();
    if (!entry)
        return nullptr;
    enabled = entry->readInt() != 0;
    return iterator.read(entry, getNumChildren()) ? entry : nullptr;
}

tbEntry* tbAutoSwitch::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbSwitch::write(file, entry);
    if (!entry)
        entry = created;
    if (!entry)
        return nullptr;
    entry->writeInt(enabled ? 1 : 0);
    iterator.write(entry);
    return created;
}
