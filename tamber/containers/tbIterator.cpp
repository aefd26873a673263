#include <tamber/containers/tbIterator.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbTime.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace
{

// Files may give items any number of frames, also negative ones, and programs may select any item.
int sumOf(std::int64_t a, std::int64_t b)
{
    return int(std::clamp<std::int64_t>(a + b, INT_MIN, INT_MAX));
}

} // namespace

template <class T>
bool tbIterator::ItemArray<T>::grow(int n)
{
    if (n <= capacity)
        return true;
    if (std::size_t(n) > SIZE_MAX / sizeof(T))
        return false;
    T* block = static_cast<T*>(tbMemory::realloc(values, std::size_t(n) * sizeof(T)));
    if (!block)
        return false;
    std::fill(block + capacity, block + n, T{});
    values = block;
    capacity = n;
    return true;
}

template <class T>
void tbIterator::ItemArray<T>::fill(int n, T value)
{
    if (n > 0 && grow(n))
        std::fill(values, values + n, value);
}

template <class T>
void tbIterator::ItemArray<T>::copy(const ItemArray& other)
{
    free();
    if (grow(other.capacity) && other.capacity > 0)
        std::memcpy(values, other.values, std::size_t(other.capacity) * sizeof(T));
}

template <class T>
void tbIterator::ItemArray<T>::free()
{
    tbMemory::free(values);
    values = nullptr;
    capacity = 0;
}

tbIterator::tbIterator(const tbIterator& other)
{
    *this = other;
}

tbIterator& tbIterator::operator=(const tbIterator& other)
{
    if (this == &other)
        return *this;
    paused = other.paused;
    mode = other.mode;
    direction = other.direction;
    cycle = other.cycle;
    numItems = other.numItems;
    currentItem = other.currentItem;
    step = other.step;
    totalTime = other.totalTime;
    itemTime = other.itemTime;
    itemTimes.copy(other.itemTimes);
    elapsed = other.elapsed;
    timeStamp = other.timeStamp;
    totalFrames = other.totalFrames;
    itemFrames = other.itemFrames;
    itemFrameCounts.copy(other.itemFrameCounts);
    frameCounter = other.frameCounter;
    return *this;
}

tbIterator::~tbIterator()
{
    itemTimes.free();
    itemFrameCounts.free();
}

void tbIterator::setNumItems(int n)
{
    numItems = n;
    if (mode == MODE_FRAMES)
        itemFrameCounts.fill(n, shareOfFrames());
    else
        itemTimes.fill(n, shareOfTime());
}

// What each item gets: its part of the total when there is one.
float tbIterator::shareOfTime() const
{
    return totalTime > 0.0f && numItems >= 1 ? totalTime / float(numItems) : itemTime;
}

int tbIterator::shareOfFrames() const
{
    return totalFrames >= 1 && numItems >= 1 ? totalFrames / numItems : itemFrames;
}

void tbIterator::setTime(float seconds)
{
    totalTime = seconds;
    itemTime = 0.0f;
    if (numItems > 0)
        itemTimes.fill(numItems, seconds / float(numItems));
}

void tbIterator::setItemTime(float seconds)
{
    itemTime = seconds;
    totalTime = 0.0f;
    itemTimes.fill(numItems, seconds);
}

void tbIterator::setItemTime(int i, float seconds)
{
    if (i >= 0 && i < INT_MAX && itemTimes.grow(i + 1))
        itemTimes.values[i] = seconds;
}

float tbIterator::getItemTime(int i) const
{
    return itemTimes.get(i);
}

void tbIterator::setFrameCount(int frames)
{
    totalFrames = frames;
    itemFrames = 0;
    if (numItems > 0)
        itemFrameCounts.fill(numItems, frames / numItems);
}

void tbIterator::setItemFrameCount(int frames)
{
    itemFrames = frames;
    totalFrames = 0;
    itemFrameCounts.fill(numItems, frames);
}

void tbIterator::setItemFrameCount(int i, int frames)
{
    if (i >= 0 && i < INT_MAX && itemFrameCounts.grow(i + 1))
        itemFrameCounts.values[i] = frames;
}

int tbIterator::getItemFrameCount(int i) const
{
    return itemFrameCounts.get(i);
}

void tbIterator::reset()
{
    currentItem = -1;
    step = direction == BACKWARD ? -1 : 1;
}

int tbIterator::update()
{
    if (paused || numItems == 0)
        return currentItem;
    if (currentItem == -1)
    {
        start();
        return currentItem;
    }
    const bool goesOn = mode == MODE_FRAMES ? stepByFrames() : stepByTime();
    return goesOn ? currentItem : -1;
}

void tbIterator::start()
{
    currentItem = direction == BACKWARD ? numItems - 1 : 0;
    if (mode == MODE_FRAMES)
    {
        frameCounter = 1;
        return;
    }
    timeStamp = float(tbGetTime());
    elapsed = 0.0f;
}

// False when the cycle ended. The time stamp then stays: the next call measures from the one before, which an owner
// that goes on after the end relies on.
bool tbIterator::stepByTime()
{
    const float now = float(tbGetTime());
    elapsed = float(withoutWholeRounds(elapsed + (now - timeStamp), itemTimes));
    int steps = 0;
    for (; steps < stepsPerRound() && elapsed > getItemTime(currentItem); ++steps)
    {
        elapsed -= getItemTime(currentItem);
        currentItem = sumOf(currentItem, step);
        if (!applyCycle())
            return false;
    }
    if (steps == stepsPerRound())
        elapsed = 0.0f; // no item takes any time
    timeStamp = now;
    return true;
}

bool tbIterator::stepByFrames()
{
    frameCounter = sumOf(frameCounter, 1);
    if (frameCounter <= getItemFrameCount(currentItem))
        return true;
    frameCounter = int(withoutWholeRounds(frameCounter, itemFrameCounts));
    const int mostSteps = stepsPerRound() + 1; // out of the current item and once round
    int steps = 0;
    for (; steps < mostSteps && frameCounter > getItemFrameCount(currentItem); ++steps)
    {
        frameCounter = sumOf(frameCounter, -std::int64_t(getItemFrameCount(currentItem)));
        currentItem = sumOf(currentItem, step);
        if (!applyCycle())
            return false;
    }
    if (steps == mostSteps) // no item takes any frame
        frameCounter = 1;
    return true;
}

// A round passes every item once, turning round at the ends every inner item twice.
int tbIterator::stepsPerRound() const
{
    return cycle == CYCLE_REVERSE ? sumOf(numItems, numItems) : numItems;
}

// What is left of a time, or of frames, when the rounds that it covers are taken out: they end where they began. Whole
// rounds leave one, which ends with the item before: an item is not left before its time is over.
template <class T>
double tbIterator::withoutWholeRounds(double amount, const ItemArray<T>& items) const
{
    if (cycle != CYCLE_WRAP && cycle != CYCLE_REVERSE)
        return amount;
    double round = 0;
    for (int i = 0; i < std::min(numItems, items.capacity); ++i)
        round += double(items.get(i));
    if (cycle == CYCLE_REVERSE && numItems > 1)
        round += round - double(items.get(0)) - double(items.get(numItems - 1));
    if (!(round > 0 && amount > round))
        return amount;
    const double rest = std::fmod(amount, round);
    return rest > 0 ? rest : round;
}

bool tbIterator::applyCycle()
{
    if (cycle == CYCLE_WRAP)
    {
        if (currentItem >= numItems)
            currentItem = 0;
        if (currentItem < 0)
            currentItem = numItems - 1;
        return true;
    }
    if (cycle != CYCLE_REVERSE)
        return false;
    if (currentItem >= numItems || currentItem < 0)
    {
        const int oldStep = step;
        step = -step;
        currentItem = numItems == 1 ? 0 : currentItem - 2 * oldStep;
    }
    return true;
}

// It has ended, then, when it stands behind the last item, however far.
bool tbIterator::stopsAtEnd() const
{
    return numItems > 0 && cycle != CYCLE_WRAP && cycle != CYCLE_REVERSE;
}

void tbIterator::write(tbEntry* entry) const
{
    entry->writeByte(char(paused));
    entry->writeByte(char(cycle));
    entry->writeByte(char(mode));
    entry->writeByte(char(direction));
    entry->writeInt(stopsAtEnd() ? std::min(currentItem, numItems) : currentItem);
    entry->writeInt(step);
    entry->writeFloat(totalTime);
    entry->writeFloat(itemTime);
    entry->writeInt(itemTimes.capacity);
    if (itemTimes.capacity > 0)
        entry->writeFloats(itemTimes.values, itemTimes.capacity);
    entry->writeInt(totalFrames);
    entry->writeInt(itemFrames);
    entry->writeInt(itemFrameCounts.capacity);
    if (itemFrameCounts.capacity > 0)
        entry->writeInts(itemFrameCounts.values, itemFrameCounts.capacity);
    entry->writeInt(numItems);
}

namespace
{

// A stored byte that is no value of its enumeration keeps its number: the rules for other values apply.
template <class Enum>
Enum readEnum(tbEntry* entry)
{
    return Enum(static_cast<unsigned char>(entry->readByte()));
}

} // namespace

bool tbIterator::read(tbEntry* entry, int wantedItems)
{
    paused = entry->readByte() != 0;
    cycle = readEnum<CYCLE>(entry);
    mode = readEnum<MODE>(entry);
    direction = readEnum<DIRECTION>(entry);
    const int item = entry->readInt();
    step = entry->readInt() < 0 ? -1 : 1;
    totalTime = entry->readFloat();
    itemTime = entry->readFloat();
    const int numTimes = entry->readCount(int(sizeof(float)));
    if (numTimes > 0 && itemTimes.grow(numTimes))
        entry->readFloats(itemTimes.values, numTimes);
    totalFrames = entry->readInt();
    itemFrames = entry->readInt();
    const int numFrames = entry->readCount(int(sizeof(int)));
    if (numFrames > 0 && itemFrameCounts.grow(numFrames))
        entry->readInts(itemFrameCounts.values, numFrames);
    const int storedItems = entry->readInt();
    if (wantedItems >= 0)
        takeItems(wantedItems);
    else // setting the number of items gives each a value, so there are never more items than values
        numItems = std::clamp(storedItems, 0, std::max(itemTimes.capacity, itemFrameCounts.capacity));
    currentItem = item < 0 || (item >= numItems && !stopsAtEnd()) ? -1 : std::min(item, numItems);
    return !entry->hasFailed();
}

// Goes over to `n` items and keeps the values that are there.
void tbIterator::takeItems(int n)
{
    const int times = itemTimes.capacity;
    const int frames = itemFrameCounts.capacity;
    numItems = n;
    if (mode == MODE_FRAMES && itemFrameCounts.grow(n))
        std::fill(itemFrameCounts.values + std::min(frames, n), itemFrameCounts.values + n, shareOfFrames());
    if (mode != MODE_FRAMES && itemTimes.grow(n))
        std::fill(itemTimes.values + std::min(times, n), itemTimes.values + n, shareOfTime());
}
