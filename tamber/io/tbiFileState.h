#pragma once

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbProgress.h>
#include <tamber/io/tbiFileLayout.h>
#include <tamber/io/tbiFileWindow.h>
#include <tamber/io/tbiFileWriter.h>
#include <tamber/io/tbiHashTable.h>
#include <tamber/kernel/tbiMemoryWatch.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// A fault that was met, of which no text was made yet.
struct tbiFault
{
    const tbEntry* entry = nullptr; // null when there is none
    std::int64_t place = 0;
    const char* whatOf = "";
    char rule[120] = {};
    bool namesClass = false; // behind the rule

    /// The text is copied as far as it fits: a file may have millions of faults.
    void set(const tbEntry* of, std::int64_t at, const char* placeOf, const char* text,
             bool withClass = false)
    {
        entry = of;
        place = at;
        whatOf = placeOf;
        const std::size_t length = std::min(std::strlen(text), sizeof rule - 1);
        std::memcpy(rule, text, length);
        rule[length] = 0;
        namesClass = withClass;
    }
};

// What a tbFile keeps beside the contents of its file.
struct tbiFileState : tbAllocated<tbiFileState>
{
    struct HeldData
    {
        void* data;
        void (*hold)(void*, bool);
    };

    std::string target; // the path that was opened or created
    std::string label;  // the same in messages, printable
    std::string errorText;
    tbiFault fault;
    int numMessages = 0;
    int numUnknown = 0; // classes that nobody supplies and that were named

    tbEntry* directory = nullptr; // room for the entries that the file had when it was opened, in one block
    int directorySize = 0;
    tbiHashTable<tbEntry> handles;
    bool handlesKnown = true;         // the table holds all handles
    std::vector<tbiTagName> tagNames; // sorted, of the first tags
    bool firstEntriesKnown = true;

    tbiFileWindow window;
    std::int64_t dataStart = 0; // nothing but tables before it

    // The budget of the file: what may still come.
    std::int64_t workLeft = 0;  // bytes that entries hold, or that load in the time that something else takes
    std::int64_t bytesLeft = 0; // of memory for entries that were loaded and what is made of them
    std::int64_t openLeft = 0;  // of memory for what objects are reading themselves from
    std::int64_t lengthLeft = 0; // bytes of the file, for objects that take much longer to make than to read

    static constexpr std::int64_t SMALLEST_WORK = std::int64_t{256} << 20;
    static constexpr std::int64_t WORK_FACTOR = 160;
    static constexpr std::int64_t FIRST_BYTES = std::int64_t{24} << 20;
    static constexpr std::int64_t BYTES_FACTOR = 128; // the best that packing can do
    static constexpr std::int64_t FIRST_OPEN = std::int64_t{1} << 20;
    static constexpr std::int64_t FIRST_LENGTH = std::int64_t{64} << 10;

    // What objects take that their data does not tell, in bytes.
    static constexpr std::int64_t REFERENCE_WORK =
        320; // of data that load in the time that following one takes
    static constexpr std::int64_t REFERENCE_COST = 64; // an edge, at both ends
    static constexpr std::int64_t OBJECT_COST = 1344;  // as much as the largest class but scenes takes
    static constexpr std::int64_t SCENE_COST = 6144;   // its contexts, stacks, locks and lists

    // Of the file, for a scene and for a collider: no file that was written by the library has less for an entry.
    static constexpr std::int64_t HEAVY_LENGTH = tbiFileLayout::RECORD_SPACE;

    tbProgressFunc progress = nullptr;
    std::int64_t bytesDone = 0; // of all that the entries hold, since the file was opened or write() began
    std::int64_t bytesToDo = 0;
    int stepsDone = 0;
    static constexpr int PROGRESS_STEPS = 256;

    int readDepth = 0;           // objects that are reading themselves
    int openScenes = 0;          // scenes among them
    std::uint32_t numGraphs = 0; // outermost objects that began to read themselves
    unsigned int paths = 0;      // of the object that is reading itself, so far
    bool sceneBelow = false;     // the same: it is a scene, or holds one
    bool depthReported = false;
    bool pathsReported = false;
    bool budgetReported = false;
    std::vector<HeldData> heldData;

    bool swapOutput = false; // the header, the tables and new entries are written in the other byte order
    tbEntry::COMPRESSION compression = tbEntry::NO_COMPRESSION; // of new entries
    int writeDepth = 0;
    const char* writeRule = nullptr; // why the file must not be written
    tbiFileWriter writer;

    /// Begins the budget of a file of `length` bytes. Where no two of its entries share bytes, all is allowed.
    void setBudget(std::int64_t length)
    {
        workLeft = std::max(SMALLEST_WORK, WORK_FACTOR * length);
        bytesLeft = FIRST_BYTES + BYTES_FACTOR * length;
        openLeft = FIRST_OPEN + length;
        lengthLeft = FIRST_LENGTH + length;
    }
    /// For what an entry's object takes beyond its data: time and memory. Lists that share bytes make many edges of
    /// few. False, and nothing spent, where a file of this length can make no more.
    bool spend(std::int64_t work, std::int64_t bytes)
    {
        if (work > workLeft || bytes > bytesLeft)
            return false;
        workLeft -= work;
        bytesLeft -= bytes;
        return true;
    }
    /// Room for `number` entries, in which nothing is made yet. False when memory is out.
    bool makeDirectory(int number)
    {
        directory = static_cast<tbEntry*>(tbMemory::malloc(std::size_t(number) * sizeof(tbEntry)));
        directorySize = directory ? number : 0;
        return directory != nullptr;
    }
    bool isInDirectory(const tbEntry* entry) const
    {
        const std::less<const tbEntry*> before;
        return !before(entry, directory) && before(entry, directory + directorySize);
    }
    /// How many references can be followed.
    std::int64_t getReferencesLeft() const
    {
        return std::min(workLeft / REFERENCE_WORK, bytesLeft / REFERENCE_COST);
    }
    bool setErrorText(const char* rule)
    {
        errorText = label.empty() ? rule : label + ": " + rule;
        return true;
    }
    /// Makes room for one more held data. False when memory is out.
    bool prepareHold()
    {
        return tbiWithoutThrow(false,
                               [this]
                               {
                                   if (heldData.size() == heldData.capacity())
                                       heldData.reserve(heldData.size() * 2 + 16);
                                   return true;
                               });
    }
    void beginProgress(std::int64_t bytes)
    {
        bytesDone = 0;
        bytesToDo = bytes;
        stepsDone = 0;
    }
    void addProgress(int bytes)
    {
        bytesDone = std::min(bytesDone + std::max(bytes, 0), bytesToDo);
        if (!progress)
            return;
        const int steps = bytesToDo > 0 ? int(double(bytesDone) / double(bytesToDo) * PROGRESS_STEPS) : 0;
        if (steps == stepsDone)
            return;
        stepsDone = steps;
        progress(double(steps) / PROGRESS_STEPS);
    }
    /// Forgets the file that was open; the last error stays to be asked for.
    void close()
    {
        tbMemory::free(directory);
        directory = nullptr;
        directorySize = 0;
        handles.clear();
        handlesKnown = true;
        tagNames.clear();
        firstEntriesKnown = true;
        window.detach();
        dataStart = workLeft = bytesLeft = openLeft = lengthLeft = 0;
        readDepth = openScenes = writeDepth = 0;
        paths = 0;
        sceneBelow = false;
        heldData.clear();
        progress = nullptr;
        swapOutput = false;
        compression = tbEntry::NO_COMPRESSION;
        writeRule = nullptr;
    }
    /// Begins with a file of that name.
    void open(const char* path, std::string name)
    {
        target = path ? path : "";
        label = std::move(name);
        errorText.clear();
        numMessages = numUnknown = 0;
        depthReported = pathsReported = budgetReported = false;
    }
};
