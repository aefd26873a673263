// How references from entry to entry are followed, and how much a file may make of them.
#include <tamber/io/tbFile.h>

#include <tamber/collide/tbCollider.h>
#include <tamber/graph/tbScene.h>
#include <tamber/io/tbiFileLayout.h>
#include <tamber/io/tbiFileState.h>
#include <tamber/kernel/tbBase.h>

#include <optional>

namespace
{

using namespace tbiFileLayout;

tbBase* objectOf(const void* handle)
{
    return static_cast<tbBase*>(const_cast<void*>(handle));
}

// Objects are read and written inside each other: whether memory ran out is asked once for all.
class OutermostWatch
{
public:
    explicit OutermostWatch(int depth)
    {
        if (depth == 0)
            memory.emplace();
    }
    bool ranOut() const { return memory && memory->ranOut(); }

private:
    std::optional<tbiMemoryWatch> memory;
};

} // namespace

// Objects

tbBase* tbFile::readObject(int index)
{
    return follow(index, nullptr, state->readDepth > 0);
}

tbBase* tbFile::readObjectRef(tbEntry* entry)
{
    const int index = entry->readInt();
    const bool nested = state->readDepth > 0 || entry->objectRecord;
    if (index < 0 || !spendOnReference(entry, index))
        return nullptr;
    return nested && isKnown(index) ? followKnown(index) : follow(index, entry, nested);
}

// Most references of files with many of them lead to what many refer to.
int tbFile::readKnownRefs(tbEntry* entry, const tbType* type, tbBase** objects, int most)
{
    if (state->readDepth == 0 && !entry->objectRecord)
        return 0; // what it gets is the program's
    const std::int64_t start = tbiFileLayout::aligned(entry->cursor, 4);
    const std::int64_t inData = (entry->available - start) / 4; // packed data goes the other way
    const std::int64_t paid = state->readDepth > 0 ? state->getReferencesLeft() : inData;
    const std::int64_t end = std::min({std::int64_t(most), inData, paid});
    int number = 0;
    for (; number < end; ++number)
    {
        const auto index =
            int(tbiFileLayout::load<std::uint32_t>(entry->data + start + 4 * number, entry->byteSwapped));
        if (!isKnown(index) || !objectOf(entries[index]->handle)->isOfType(type))
            break;
        objects[number] = followKnown(index);
    }
    if (number == 0)
        return 0;
    spendOnReferences(entry, number);
    entry->cursor = int(start) + 4 * number;
    return number;
}

// Whether there is nothing to be done and nothing to be said when a reference is followed from an object, but to count.
inline bool tbFile::isKnown(int index) const
{
    if (!entries.indexInRange(index))
        return false;
    const tbEntry* target = entries[index];
    return target->held && target->kind == tbEntry::KIND_OBJECT && target->state == tbEntry::STATE_IDLE &&
           !target->failed && !target->holdsScene && hasRoomForPaths(target);
}

inline tbBase* tbFile::followKnown(int index)
{
    const tbEntry* target = entries[index];
    state->paths += target->expanded;
    return objectOf(target->handle);
}

// Every reference adds a path to all that lies below its target: two references a level double the graph that a walk
// meets, though not the file.
inline bool tbFile::hasRoomForPaths(const tbEntry* target) const
{
    return target->expanded <= maxObjects && state->paths <= maxObjects - target->expanded;
}

inline bool tbFile::spendOnMade(tbEntry* entry, std::int64_t work, std::int64_t bytes)
{
    if (!state->spend(work, bytes))
        return false;
    entry->counted += bytes;
    return true;
}

bool tbEntry::checkMemory(std::int64_t bytes)
{
    if (file->spendOnMade(this, 0, bytes))
        return true;
    fail("the objects together take more than a file of this length can");
    return false;
}

// What a program reads record by record is its own affair, and may be read again.
inline bool tbFile::spendOnReferences(tbEntry* referrer, int number)
{
    return state->readDepth == 0 || spendOnMade(referrer, number * tbiFileState::REFERENCE_WORK,
                                                number * tbiFileState::REFERENCE_COST);
}

// Whether it leads anywhere or not: both take time.
bool tbFile::spendOnReference(tbEntry* referrer, int index)
{
    if (spendOnReferences(referrer, 1))
        return true;
    if (!std::exchange(state->budgetReported, true))
        reportReference(referrer, index, "the references together make more than a file of this length can");
    return false;
}

// For what an object takes because it is of its class, however short its record is.
bool tbFile::spendOnClass(tbEntry* entry, const tbiTag& tag)
{
    if (!tag.isScene && !tag.isCollider)
        return true;
    const std::int64_t cost = tag.isScene ? tbiFileState::SCENE_COST : 0;
    if (tbiFileState::HEAVY_LENGTH > state->lengthLeft || !spendOnMade(entry, cost, cost))
        return false;
    state->lengthLeft -= tbiFileState::HEAVY_LENGTH;
    return true;
}

tbEntry* tbFile::findTarget(int index, const tbEntry* referrer)
{
    tbEntry* target = entries.indexInRange(index) ? entries[index] : nullptr;
    if (!target)
        reportReference(referrer, index, "a reference beyond the directory");
    else if (target->state != tbEntry::STATE_IDLE)
        reportReference(referrer, index,
                        "a reference to an entry that is being read, which would close a cycle");
    else if (!target->failed)
        return target;
    return nullptr;
}

tbBase* tbFile::follow(int index, const tbEntry* referrer, bool nested)
{
    tbEntry* target = findTarget(index, referrer);
    if (!target)
        return nullptr;
    if (target->handle && target->kind != tbEntry::KIND_OBJECT)
    {
        reportReference(referrer, index, "a reference to an entry of another kind");
        return nullptr;
    }
    if (nested && target->handle && target->holdsScene && state->openScenes > 0)
    {
        reportReference(referrer, index, "a scene inside a scene");
        return nullptr;
    }
    tbBase* object = target->handle ? objectOf(target->handle) : makeObject(target, referrer);
    if (!object)
        return nullptr;
    if (!nested)
    {
        target->givenOut = true;
        return object;
    }
    if (!target->held)
        hold(target, nullptr);
    if (!countPaths(target, referrer))
        return nullptr;
    state->sceneBelow = state->sceneBelow || target->holdsScene;
    return object;
}

tbBase* tbFile::makeObject(tbEntry* entry, const tbEntry* referrer)
{
    if (state->readDepth > maxDepth)
    {
        if (!std::exchange(state->depthReported, true))
            reportReference(referrer, entry->dirNum, "references nest too deep");
        return nullptr;
    }
    const tbiTag* tag = tags.indexInRange(entry->tag) ? tags[entry->tag] : nullptr;
    if (!tag || tag->isData)
    {
        reportReference(referrer, entry->dirNum, "a reference to an entry of another kind");
        return nullptr;
    }
    const tbType* type = findClass(tags[entry->tag]);
    if (!type)
    {
        reportUnknownClass(entry);
        return nullptr;
    }
    // Scenes are roots: each has locks, events and walks of its own.
    if (tag->isScene && state->openScenes > 0)
    {
        reportReference(referrer, entry->dirNum, "a scene inside a scene");
        return nullptr;
    }
    if (!spendOnClass(entry, *tag))
    {
        entry->failed = true;
        reportAt(entry, entry->recordPlace + RECORD_TAG,
                 "the scenes and colliders together take more than a file of this length can");
        return nullptr;
    }
    tbBase* object = type->isWritable() ? type->create() : nullptr;
    if (!object)
    {
        entry->failed = true;
        reportAt(entry, entry->recordPlace + RECORD_TAG, "a class of which files make no objects");
        return nullptr;
    }
    object->refNoCheck(); // nothing that happens while it reads may delete it
    const OutermostWatch memory(state->readDepth);
    const bool read = readInto(object, entry, tag->isScene);
    if (memory.ranOut())
        entry->fail("memory is out");
    if (!read || memory.ranOut())
    {
        entry->failed = true;
        object->unRef();
        return nullptr;
    }
    if (!entry->bind(object, tbEntry::KIND_OBJECT))
    {
        entry->failed = true;
        object->unRef();
        return nullptr;
    }
    object->unRefNoDelete();
    return object;
}

// Within one graph a class is asked for once; plug-ins come and go between graphs.
const tbType* tbFile::findClass(tbiTag* tag) const
{
    if (state->readDepth > 0 && tag->askedIn == state->numGraphs)
        return tag->type;
    tag->type = tbType::findTypeToCreate(tag->name);
    tag->isScene = tag->type && tag->type->isOfType(tbScene::getClassType());
    tag->isCollider = tag->type && tag->type->isOfType(tbCollider::getClassType());
    tag->askedIn = state->numGraphs;
    return tag->type;
}

bool tbFile::readInto(tbBase* object, tbEntry* entry, bool isScene)
{
    state->openScenes += isScene ? 1 : 0;
    const bool loadedBefore = entry->isLoaded();
    const int cursor = entry->cursor;
    const std::int64_t openLeft = state->openLeft;
    const unsigned int pathsAbove = std::exchange(state->paths, 1u);
    const bool sceneAbove = std::exchange(state->sceneBelow, isScene);
    entry->cursor = 0;
    entry->state = tbEntry::STATE_STARTED;
    if (state->readDepth++ == 0)
        ++state->numGraphs;
    const bool read = object->read(this, entry) != nullptr;
    --state->readDepth;
    state->openScenes -= isScene ? 1 : 0;
    if (!read && entry->state == tbEntry::STATE_READING)
        entry->fail("its class cannot read it");
    entry->state = tbEntry::STATE_IDLE;
    state->openLeft = openLeft;
    entry->expanded = std::exchange(state->paths, pathsAbove);
    entry->holdsScene = std::exchange(state->sceneBelow, sceneAbove);
    entry->cursor = loadedBefore ? cursor : 0;
    const bool good = read && !entry->failed;
    if (!loadedBefore)
    {
        entry->freeData();
        if (!good)
            giveBack(entry);
    }
    return good;
}

// Loads the entry for the object that reads itself from it. Its cursor is at the start then.
bool tbFile::beginObject(tbEntry* entry)
{
    if (entry->file != this || !readEntry(entry))
        return false;
    if (state->readDepth == 0)
    {
        state->paths = 1;
        state->sceneBelow = false;
        entry->failed = false;
    }
    entry->objectRecord = true;
    entry->reset();
    return true;
}

bool tbFile::countPaths(const tbEntry* target, const tbEntry* referrer)
{
    if (hasRoomForPaths(target))
    {
        state->paths += target->expanded;
        return true;
    }
    if (!std::exchange(state->pathsReported, true))
        reportReference(referrer, target->dirNum, "the graph has too many paths");
    return false;
}

tbEntry* tbFile::writeObject(const tbBase* object)
{
    if (tbEntry* known = findEntry(object))
        return known;
    if (state->writeDepth >= maxDepth)
    {
        failWrite("references nest too deep");
        return nullptr;
    }
    const OutermostWatch memory(state->writeDepth);
    ++state->writeDepth;
    tbEntry* entry = object->write(this, nullptr);
    --state->writeDepth;
    if (memory.ranOut())
        failWrite("memory is out");
    if (entry)
        entry->trim();
    return entry;
}

// Shared data

void* tbFile::readDataRef(tbEntry* entry, const char* className, ReadDataFunc read, HoldDataFunc holdData)
{
    const int index = entry->readInt();
    tbEntry* target = index < 0 ? nullptr : findTarget(index, entry);
    if (!target)
        return nullptr;
    const char* tagName = getTagDesc(target->tag);
    const bool sameKind = tagName && std::strcmp(tagName, className) == 0 &&
                          (!target->handle || target->kind == tbEntry::KIND_DATA);
    if (!sameKind)
    {
        reportReference(entry, index, "a reference to an entry of another kind");
        return nullptr;
    }
    if (!state->prepareHold())
    {
        entry->fail("memory is out");
        return nullptr;
    }
    void* data = target->handle ? const_cast<void*>(target->handle) : makeData(target, read, holdData);
    if (data && (state->readDepth > 0 || entry->objectRecord))
        hold(target, holdData);
    return data;
}

void* tbFile::makeData(tbEntry* target, ReadDataFunc read, HoldDataFunc holdData)
{
    target->state = tbEntry::STATE_STARTED;
    const std::int64_t openLeft = state->openLeft;
    void* data = nullptr;
    if (readEntry(target))
    {
        target->reset();
        data = read(target);
        if (!data)
            target->fail("its class cannot read it");
    }
    target->state = tbEntry::STATE_IDLE;
    state->openLeft = openLeft;
    target->freeData();
    target->reset();
    if (data && !target->failed && target->bind(data, tbEntry::KIND_DATA))
        return data;
    target->failed = true;
    giveBack(target);
    if (data)
    {
        holdData(data, true);
        holdData(data, false);
    }
    return nullptr;
}

// What the file holds

void tbFile::hold(tbEntry* entry, HoldDataFunc holdData)
{
    if (entry->held)
        return;
    entry->held = true;
    if (entry->kind == tbEntry::KIND_OBJECT)
    {
        objectOf(entry->handle)->ref();
        return;
    }
    void* data = const_cast<void*>(entry->handle);
    holdData(data, true);
    state->heldData.push_back({data, holdData});
}

void tbFile::dropHold(tbEntry* entry)
{
    const bool drop = entry->held && entry->kind == tbEntry::KIND_OBJECT;
    entry->held = false;
    if (!drop)
        return;
    tbBase* object = objectOf(entry->handle);
    if (entry->givenOut)
        object->unRefNoDelete(); // lives on with count 0: it is the program's
    else
        object->unRef();
}

void tbFile::dropHolds()
{
    for (tbEntry* entry : entries)
        dropHold(entry);
    for (const tbiFileState::HeldData& held : state->heldData)
        held.hold(held.data, false);
    state->heldData.clear();
}
