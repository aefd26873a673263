#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/io/tbEntry.h>
#include <tamber/io/tbProgress.h>

struct tbiFileState;
struct tbiFileHeader;
struct tbiTag;

// A file of tagged entries, the library's own format: a header, the table of tags (class names), the directory of
// entries and the entries' data. Every saved object has one entry, whose tag names its class; references between
// objects are entry indices, so that what is shared is saved once and read back as one object. Files of the other
// byte order are read as well. A file and its entries belong to one thread.
//
// Whatever a file holds, reading it stays within bounds: what cannot be is refused with an error and one message
// that names file, entry, tag, byte offset and the rule that was broken.
//
// Ownership. While the file is open it holds one reference on everything that a reference inside another object's
// entry led to, and drops it when it closes: what found a holder lives on, the rest dies. What the outermost
// readObject() or readRef() returned is the caller's, with count 0; the caller keeps it alive while it goes on
// reading from the same file.
class TB_API tbFile : public tbAllocated<tbFile>
{
public:
    enum FILE_ERROR : int
    {
        FILE_OK = 0,
        FILE_CANNOT_OPEN = 1,
        FILE_NOT_OPEN = 2,
        FILE_READ_ERROR = 3,
        FILE_NOT_WRITABLE = 4,
        FILE_EMPTY = 5,
        FILE_BAD_FORMAT = 6,
        FILE_NO_DATA = 7,
        FILE_WRITE_ERROR = 8
    };

    tbFile();
    tbFile(const tbFile&) = delete;
    tbFile& operator=(const tbFile&) = delete;
    ~tbFile();

    /// Opens a regular file for reading ("r") or reading and writing ("rw") and reads header, tags and directory;
    /// the entries' data follows on demand. On failure the file is closed.
    bool open(const char* path, const char* mode);
    /// Begins a new file. It is written beside `path` and takes its place when write() succeeds; until then, and
    /// when the file is closed without write(), what stood at `path` stays as it was.
    bool create(const char* path);
    /// Has the file that create() began written in the byte order that this machine does not have: header, tables
    /// and entries. False, and nothing changed, for another file and once it has an entry.
    bool setByteSwapped(bool swapped);
    /// How entries that are made from now on are packed, where that makes them shorter. Not at all at first, and
    /// again when the file closes.
    void setCompression(tbEntry::COMPRESSION method);
    /// Writes everything to a new file beside the target, which then replaces the target in one step: after any
    /// failure the old file is untouched, and this file is closed. A graph that could not be saved whole, and a
    /// file that would pass 2 GiB, are refused with FILE_WRITE_ERROR before anything is touched.
    bool write();
    /// Saves a graph as a file of its own: writes `root` with all that it refers to, the list of the plug-ins that it
    /// needs, and then the file, as write() does. False, and the old file untouched, when any of it fails.
    bool save(const tbBase* root);
    /// Frees every entry, drops what the file held, and closes. Entries are invalid afterwards.
    void close();
    bool isOpen() const { return descriptor > 0; }
    /// True for a file of at least 97 bytes that begins with the magic in either byte order.
    static bool isTamberFormat(const char* path);

    /// The last failure since open(), create() or write() was called.
    FILE_ERROR getLastError() const { return lastError; }
    /// The last failure in words, with file, entry, tag and byte offset; the empty text when there was none.
    const char* getErrorText() const;
    /// Version word of the library that wrote the file, 0 when closed.
    unsigned int getVersion() const;
    int getNumEntries() const { return entries.getNum(); }
    int getNumTags() const { return tags.getNum(); }

    /// The tag of that name, made when there is none. Names are cut to 63 characters. -1 for null.
    int newTag(const char* className);
    /// -1 when there is none.
    int findTag(const char* className) const;
    /// The tag's class name, null when out of range.
    const char* getTagDesc(int tag) const;

    /// Appends an empty entry; null when the tag does not exist.
    tbEntry* newEntry(int tag);
    /// Null when out of range.
    tbEntry* getEntry(int index) const;
    /// The last entry in the directory that stands for `handle`. Takes the same time however many there are.
    tbEntry* findEntry(const void* handle) const;
    /// The first entry in the directory with that tag.
    tbEntry* findEntry(int tag) const;
    tbEntry* findEntry(const char* className) const;
    /// The next entry with that tag behind `after`, the first when `after` is null.
    tbEntry* findNextEntry(int tag, const tbEntry* after) const;
    /// Takes the entry out of the directory (the last entry moves into its place: enumeration order is part of the
    /// interface) and frees it. False, and nothing done, for another file's entry and one that is being read.
    bool removeEntry(tbEntry* entry);

    /// Loads the entry's data; the cursor is not moved. Refused for an entry whose object is just reading it.
    bool readEntry(tbEntry* entry);

    /// The object of an entry, made and read on first use; the same one every time. Null, with an error recorded,
    /// for an index out of range, an entry of another kind, a class that a file must not make, an entry that is
    /// being read (so that no cycle comes into being), what failed to read, and what passes a limit.
    tbBase* readObject(int index);
    /// The same for the index that is read from `entry`; a negative one is no reference.
    tbBase* readObjectRef(tbEntry* entry);
    /// As readObjectRef() for the next references, `most` at most and as long as they lead to objects of `type` that
    /// other references led to before. Returns how many went into `objects`; the next one is for readObjectRef().
    int readKnownRefs(tbEntry* entry, const tbType* type, tbBase** objects, int most);
    /// The entry of `object`, written first when there is none yet. Null when it cannot be written.
    tbEntry* writeObject(const tbBase* object);

    /// Reads an index from `entry` and returns the shared data of the class `className`, which is no tbBase, in the
    /// entry of that index; `Read` makes it on first use from its loaded entry and returns null when it cannot.
    /// Data has ref() and unRef(), and a count of 0 when it is made.
    template <class Data, Data* (*Read)(tbEntry*)>
    Data* readData(tbEntry* entry, const char* className)
    {
        return static_cast<Data*>(readDataRef(
            entry, className, [](tbEntry* dataEntry) -> void* { return Read(dataEntry); },
            [](void* data, bool hold)
            {
                if (hold)
                    static_cast<Data*>(data)->ref();
                else
                    static_cast<Data*>(data)->unRef();
            }));
    }
    /// A new entry for shared data of the class `className` that is no tbBase, stamped with the kernel's version.
    tbEntry* newDataEntry(const char* className, const void* data);

    /// Called now and then while entries are read or write() writes them, with the part of their bytes that is done,
    /// 0 to 1. Null, as at first and again when the file closes, for none.
    void setProgressFunc(tbProgressFunc func);

    /// How deep references may nest, 1,024 at first. Reading passes over deeper references; a deeper graph is not
    /// written.
    void setMaxDepth(int depth) { maxDepth = depth; }
    int getMaxDepth() const { return maxDepth; }
    /// How many objects the graph below one object may count, one for each path to them, 2^24 at first.
    void setMaxObjects(unsigned int number) { maxObjects = number; }
    unsigned int getMaxObjects() const { return maxObjects; }

private:
    friend class tbBase;
    friend class tbEntry;

    enum OPEN_MODE : int
    {
        MODE_CLOSED = -1,
        MODE_READ,
        MODE_READ_WRITE,
        MODE_CREATE
    };

    using ReadDataFunc = void* (*)(tbEntry*);
    using HoldDataFunc = void (*)(void*, bool);

    // Errors
    bool setError(FILE_ERROR error, const char* rule);
    bool failAt(FILE_ERROR error, std::int64_t place, const char* rule);
    void report(const tbEntry* entry, const char* rule);
    void reportAt(const tbEntry* entry, std::int64_t place, const char* rule);
    void reportReference(const tbEntry* referrer, int index, const char* rule);
    void reportPlace(const tbEntry* entry, std::int64_t place, const char* whatOf, const char* rule);
    void printError();
    void composeFault() const;
    void reportUnknownClass(const tbEntry* entry);
    void failWrite(const char* rule);

    // Opening
    bool openAs(const char* path, const char* mode);
    bool createAs(const char* path);
    bool refuse(FILE_ERROR errorWithoutMemory);
    bool readTables();
    bool readTags(const unsigned char* records, int number);
    bool readDirectory(const unsigned char* records, int number);
    bool addEntry(tbEntry* entry);
    void dispose(tbEntry* entry);
    tbiTag* addTag(const char* className);
    void freeAll();

    // Entry data
    bool loadData(tbEntry* entry);
    bool loadPlain(tbEntry* entry);
    bool loadPacked(tbEntry* entry);
    bool takePacked(tbEntry* entry, unsigned char* packed, int length);
    bool checkPlace(const tbEntry* entry, std::int64_t length);
    bool spendBudget(tbEntry* entry, std::int64_t packedBytes);
    bool spendOnMade(tbEntry* entry, std::int64_t work, std::int64_t bytes);
    void giveBack(tbEntry* entry);

    // References
    bool spendOnClass(tbEntry* entry, const tbiTag& tag);
    bool spendOnReferences(tbEntry* referrer, int number);
    bool spendOnReference(tbEntry* referrer, int index);
    tbBase* follow(int index, const tbEntry* referrer, bool nested);
    tbBase* makeObject(tbEntry* entry, const tbEntry* referrer);
    const tbType* findClass(tbiTag* tag) const;
    bool readInto(tbBase* object, tbEntry* entry, bool isScene);
    bool beginObject(tbEntry* entry);
    bool isKnown(int index) const;
    tbBase* followKnown(int index);
    bool hasRoomForPaths(const tbEntry* target) const;
    bool countPaths(const tbEntry* target, const tbEntry* referrer);
    tbEntry* findTarget(int index, const tbEntry* referrer);
    void* readDataRef(tbEntry* entry, const char* className, ReadDataFunc read, HoldDataFunc holdData);
    void* makeData(tbEntry* target, ReadDataFunc read, HoldDataFunc holdData);
    void hold(tbEntry* entry, HoldDataFunc holdData);
    void dropHold(tbEntry* entry);
    void dropHolds();
    bool learnHandles() const;
    bool learnTagNames() const;
    bool rebind(tbEntry* entry, const void* object);

    // Writing
    bool canWrite();
    bool writeAll();
    bool writeData(tbEntry* entry);
    void writeBytes(tbEntry* entry, const unsigned char* bytes);
    std::int64_t sumOfData() const;
    bool writeDirectory(std::int64_t place);
    bool finishWrite();

    int descriptor = -1;
    OPEN_MODE openMode = MODE_CLOSED;
    char* fileName = nullptr;
    FILE_ERROR lastError = FILE_OK;
    bool byteSwapped = false;
    tbiFileHeader* header = nullptr;
    tbTList<tbEntry*> entries;
    tbTList<tbiTag*> tags;
    int maxDepth;
    unsigned int maxObjects;
    tbiFileState* state; // in the place below: a file is usable without memory
    static constexpr std::size_t STATE_SIZE = 768;
    alignas(std::max_align_t) unsigned char statePlace[STATE_SIZE];
};
