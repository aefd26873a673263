#pragma once

#include <tamber/kernel/tbMemory.h>

class tbEntry;

// Steps through a sequence of items, showing each for a time in seconds or for a number of frames, and stops, wraps
// or turns round at the ends. A plain value: its owner calls update() once per frame.
class TB_API tbIterator : public tbAllocated<tbIterator>
{
public:
    enum MODE : unsigned char
    {
        MODE_TIME = 0,
        MODE_FRAMES = 1
    };
    enum DIRECTION : unsigned char
    {
        FORWARD = 0, // starts at the first item
        BACKWARD = 1 // starts at the last item
    };
    enum CYCLE : unsigned char
    {
        CYCLE_STOP = 0,
        CYCLE_WRAP = 1,
        CYCLE_REVERSE = 2
    };

    tbIterator() = default;
    tbIterator(const tbIterator& other);
    tbIterator& operator=(const tbIterator& other);
    ~tbIterator();

    void pause() { paused = true; }
    void resume() { paused = false; }
    bool isPaused() const { return paused; }
    void setMode(MODE value) { mode = value; }
    MODE getMode() const { return mode; }
    void setDirection(DIRECTION value) { direction = value; }
    DIRECTION getDirection() const { return direction; }
    void setCycle(CYCLE value) { cycle = value; }
    CYCLE getCycle() const { return cycle; }

    /// Not range checked.
    void setSelectedItem(int i) { currentItem = i; }
    /// The current item, -1 when not started.
    int getSelectedItem() const { return currentItem; }
    /// Gives every item its share of the total, or the item time or frames when there is no total.
    void setNumItems(int n);
    int getNumItems() const { return numItems; }

    /// Seconds for one pass; every item gets an equal share.
    void setTime(float seconds);
    float getTime() const { return totalTime; }
    void setItemTime(float seconds);
    void setItemTime(int i, float seconds);
    /// 0 outside the items that have a time.
    float getItemTime(int i) const;

    /// Frames for one pass; every item gets an equal share, rounded down.
    void setFrameCount(int frames);
    int getFrameCount() const { return totalFrames; }
    void setItemFrameCount(int frames);
    void setItemFrameCount(int i, int frames);
    int getItemFrameCount(int i) const;

    /// Not started, and stepping in the direction.
    void reset();
    /// Goes on by the clock or by one frame and returns the item to show, or -1. Passes at most once round the
    /// items a call; of many rounds that are due at once only what they leave is stepped through.
    int update();

    void write(tbEntry* entry) const;
    /// False when the entry does not hold a whole iterator. With `wantedItems` of 0 or more the iterator goes over so
    /// many items, whatever the entry says; values that are missing are filled in.
    bool read(tbEntry* entry, int wantedItems = -1);

private:
    // Values per item; grows and never shrinks.
    template <class T>
    struct ItemArray
    {
        int capacity = 0;
        T* values = nullptr;

        bool grow(int n);
        void fill(int n, T value);
        void copy(const ItemArray& other);
        void free();
        T get(int i) const { return i >= 0 && i < capacity ? values[i] : T{}; }
    };

    void start();
    bool stepByTime();
    bool stepByFrames();
    bool applyCycle();
    bool stopsAtEnd() const;
    void takeItems(int n);
    float shareOfTime() const;
    int shareOfFrames() const;
    int stepsPerRound() const;
    template <class T>
    double withoutWholeRounds(double amount, const ItemArray<T>& items) const;

    bool paused = false;
    MODE mode = MODE_TIME;
    DIRECTION direction = FORWARD;
    CYCLE cycle = CYCLE_WRAP;
    int numItems = 0;
    int currentItem = -1;
    int step = 1;
    float totalTime = 0.0f;
    float itemTime = 0.033333335f;
    ItemArray<float> itemTimes;
    float elapsed = 0.0f;
    float timeStamp = 0.0f;
    int totalFrames = 0;
    int itemFrames = 1;
    ItemArray<int> itemFrameCounts;
    int frameCounter = 0;
};
