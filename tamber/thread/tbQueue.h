#pragma once

#include <tamber/kernel/tbBase.h>

class tbLock;

// A ring buffer of items of a fixed size, copied in and out by value. Any thread may put and get.
class TB_API tbQueue : public tbBase
{
    TB_CLASS(tbQueue, tbBase)

public:
    enum MODE : int
    {
        NO_OVERWRITE = 0, // a full queue takes no more; one slot always stays free
        OVERWRITE = 1,    // the oldest item makes room
        GROW = 2          // the slots double; one always stays free
    };

    /// Item size in bytes and number of slots, each at least 1. The mode is OVERWRITE.
    tbQueue(int itemSize, int slots);
    /// Takes geometry, mode and items.
    tbQueue(const tbQueue& other);
    /// Likewise; what this queue held is gone. Unchanged when memory is out.
    tbQueue& operator=(const tbQueue& other);

    virtual void setMode(MODE mode);
    /// Copies an item in. False for null, for a full queue in mode NO_OVERWRITE, and when memory is out.
    virtual bool put(const void* item);
    /// Takes the oldest item out. False for null and for an empty queue.
    virtual bool get(void* out);
    /// Copies the oldest item, which stays. False, and `out` untouched, for null and for an empty queue.
    virtual bool sample(void* out) const;
    /// Empties the queue.
    virtual void reset();

    MODE getMode() const;
    int getCount() const;
    /// Number of slots.
    int getLength() const;
    int getItemSize() const;

    tbBase* createCopy() const override;

protected:
    ~tbQueue() override;

private:
    friend class tbThread;

    using TakeFunc = bool (*)(const void* item, void* context);
    /// Takes out the items that `take` is true for and keeps the order of the others.
    void takeOut(TakeFunc take, void* context);
    void allocate();
    bool grow();
    unsigned char* next(unsigned char* position) const
    {
        return position == last ? buffer : position + itemSize;
    }

    unsigned char* buffer = nullptr;
    unsigned char* writePosition = nullptr;
    unsigned char* readPosition = nullptr;
    unsigned char* last = nullptr;
    int slots;
    int itemSize;
    int count = 0;
    tbLock* lock;
    MODE mode = OVERWRITE;
};
