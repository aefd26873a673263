#include <tamber/thread/tbQueue.h>

#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>

TB_DEFINE_SERVICE_CLASS(tbQueue, tbBase)

tbQueue::tbQueue(int size, int length)
    : slots(std::max(length, 1)),
      itemSize(std::max(size, 1)),
      lock(new tbLock)
{
    if (lock)
        lock->ref();
    initInstance();
    allocate();
}

tbQueue::tbQueue(const tbQueue& other) : tbBase(other), slots(1), itemSize(1), lock(new tbLock)
{
    if (lock)
        lock->ref();
    initInstance();
    tbiLockGuard guard(other.lock);
    slots = other.slots;
    itemSize = other.itemSize;
    mode = other.mode;
    allocate();
    if (!buffer || !other.buffer)
        return;
    std::memcpy(buffer, other.buffer, std::size_t(slots) * std::size_t(itemSize));
    readPosition = buffer + (other.readPosition - other.buffer);
    writePosition = buffer + (other.writePosition - other.buffer);
    count = other.count;
}

// One lock at a time: two queues may be assigned to each other on two threads.
tbQueue& tbQueue::operator=(const tbQueue& other)
{
    if (this == &other)
        return *this;
    tbQueue copy(other);
    if (!copy.buffer)
        return *this;
    tbBase::operator=(other);
    tbiLockGuard guard(lock);
    std::swap(buffer, copy.buffer);
    readPosition = copy.readPosition;
    writePosition = copy.writePosition;
    last = copy.last;
    slots = copy.slots;
    itemSize = copy.itemSize;
    count = copy.count;
    mode = copy.mode;
    return *this;
}

tbQueue::~tbQueue()
{
    deleteInstance();
    if (lock)
        lock->unRef();
    tbMemory::free(buffer);
}

tbBase* tbQueue::createCopy() const
{
    return tbiCopyOf(*this);
}

// Without memory the queue has no slots: it takes nothing and gives nothing.
void tbQueue::allocate()
{
    buffer = static_cast<unsigned char*>(tbMemory::calloc(std::size_t(slots), std::size_t(itemSize)));
    readPosition = writePosition = buffer;
    if (buffer)
        last = buffer + std::size_t(slots - 1) * std::size_t(itemSize);
}

bool tbQueue::grow()
{
    if (slots > INT_MAX / 2)
        return false;
    const std::size_t size = std::size_t(slots) * std::size_t(itemSize);
    if (size > SIZE_MAX / 2)
        return false;
    const auto readOffset = std::size_t(readPosition - buffer);
    const auto writeOffset = std::size_t(writePosition - buffer);
    auto* more = static_cast<unsigned char*>(tbMemory::realloc(buffer, size * 2));
    if (!more)
        return false;
    buffer = more;
    slots *= 2;
    last = buffer + size * 2 - std::size_t(itemSize);
    readPosition = buffer + readOffset;
    writePosition = buffer + writeOffset;
    // Positions that meet while there are items belong to a full queue, whose contents wrap as well.
    if (writeOffset < readOffset || (writeOffset == readOffset && count > 0))
    {
        readPosition += size;
        std::memmove(readPosition, buffer + readOffset, size - readOffset);
    }
    return true;
}

void tbQueue::setMode(MODE newMode)
{
    tbiLockGuard guard(lock);
    mode = newMode;
}

bool tbQueue::put(const void* item)
{
    if (!item)
        return false;
    tbiLockGuard guard(lock);
    if (!buffer || (mode == NO_OVERWRITE && count >= slots - 1) ||
        (mode == GROW && count >= slots - 1 && !grow()))
        return false;
    std::memcpy(writePosition, item, std::size_t(itemSize));
    ++count;
    writePosition = next(writePosition);
    if (count >= slots && mode == OVERWRITE)
    {
        count = slots;
        readPosition = writePosition;
    }
    return true;
}

bool tbQueue::get(void* out)
{
    if (!out)
        return false;
    tbiLockGuard guard(lock);
    if (count == 0)
        return false;
    std::memcpy(out, readPosition, std::size_t(itemSize));
    readPosition = next(readPosition);
    --count;
    return true;
}

bool tbQueue::sample(void* out) const
{
    if (!out)
        return false;
    tbiLockGuard guard(lock);
    if (count == 0)
        return false;
    std::memcpy(out, readPosition, std::size_t(itemSize));
    return true;
}

void tbQueue::reset()
{
    tbiLockGuard guard(lock);
    readPosition = writePosition = buffer;
    count = 0;
}

void tbQueue::takeOut(TakeFunc take, void* context)
{
    tbiLockGuard guard(lock);
    unsigned char* from = readPosition;
    unsigned char* to = readPosition;
    int kept = 0;
    for (int i = 0; i < count; ++i, from = next(from))
    {
        if (take(from, context))
            continue;
        if (to != from)
            std::memcpy(to, from, std::size_t(itemSize));
        to = next(to);
        ++kept;
    }
    writePosition = to;
    count = kept;
}

tbQueue::MODE tbQueue::getMode() const
{
    tbiLockGuard guard(lock);
    return mode;
}

int tbQueue::getCount() const
{
    tbiLockGuard guard(lock);
    return count;
}

int tbQueue::getLength() const
{
    tbiLockGuard guard(lock);
    return slots;
}

int tbQueue::getItemSize() const
{
    tbiLockGuard guard(lock);
    return itemSize;
}
