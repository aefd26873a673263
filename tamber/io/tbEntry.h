#pragma once

#include <tamber/kernel/tbMemory.h>

class tbBase;
class tbiUnpacker;

// One entry of a file: a flat record of values that a cursor reads and writes. Entries belong to their tbFile, which
// makes and frees them.
//
// Integers, booleans (as integers 0 and 1) and floats stand at multiples of 4 from the start, doubles at multiples
// of 8; everything else is packed. Gaps hold zeros.
//
// Reading never leaves the data. A value that does not fit whole counts as past the end: the marker is returned and
// the cursor stays. What a read() of a class needs beyond that is below "bounded reading".
class TB_API tbEntry : public tbAllocated<tbEntry>
{
public:
    enum COMPRESSION : int
    {
        NO_COMPRESSION = 0,
        RLE = 1
    };

    tbEntry(const tbEntry&) = delete;
    tbEntry& operator=(const tbEntry&) = delete;

    /// Marker -1.
    char readByte();
    /// Marker 0xFFFF.
    short readShort();
    /// Marker -1.
    int readInt();
    /// As `n` times readInt(); nothing for n below 1.
    void readInts(int* values, int n);
    /// Marker true.
    bool readBool();
    /// Marker -1.
    float readFloat();
    /// As `n` times readFloat(); nothing for n below 1.
    void readFloats(float* values, int n);
    /// Marker -1.
    double readDouble();
    /// Copies the text in the next `len` bytes, or in what is left when fewer remain, into the `len` bytes of
    /// `text`. The rest and always the last byte become 0. Returns `len`, or -1 and the empty text at the end.
    int readString(char* text, int len);
    /// Copies `len` bytes, or what is left when fewer remain, and returns the count copied; -1 at the end.
    int readChunk(void* bytes, int len);

    // Bounded reading: what read() of a class asks before it takes memory or goes round a loop. A failed entry is
    // one whose object cannot be read: read() returns null for it, as in
    //     const int n = entry->readCount(4);
    //     ...
    //     return entry->hasFailed() ? nullptr : entry;

    /// Bytes between cursor and end.
    int getRemaining() const { return isLoaded() && cursor < dataSize ? dataSize - cursor : 0; }
    /// Reads the count of items that follow, each at least `itemSize` bytes long. A negative count is 0. A count
    /// whose items cannot all be there fails the entry and gives 0.
    int readCount(int itemSize);
    /// True when `count` items of `itemSize` bytes remain at multiples of `alignment`; otherwise fails the entry.
    bool checkItems(int count, int itemSize, int alignment = 1);
    /// True when a file of this length may make something of the entry that takes `bytes` beyond those that it is
    /// made of; otherwise fails the entry. For whatever takes several times as much.
    bool checkMemory(std::int64_t bytes);
    /// Marks the entry as failed: the file records FILE_READ_ERROR and reports file, entry, tag, byte offset and
    /// `rule`, the rule that the data breaks. Only the first call for an entry counts.
    void fail(const char* rule);
    bool hasFailed() const { return failed; }
    /// Reports as fail() does, where the object can be read without what breaks the rule.
    void passOver(const char* rule);

    // Writing. The data grows with the cursor. An entry that cannot grow any more keeps what it has, and the file
    // refuses to be written.
    void writeByte(char value);
    void writeShort(short value);
    void writeInt(int value);
    void writeInts(const int* values, int n);
    void writeBool(bool value) { writeInt(value ? 1 : 0); }
    void writeFloat(float value);
    void writeFloats(const float* values, int n);
    void writeDouble(double value);
    /// The characters and the terminating zero; null counts as the empty text.
    void writeString(const char* text);
    void writeChunk(const void* bytes, int len);

    /// Moves the cursor to the start.
    void reset() { cursor = 0; }
    /// Replaces the data by a copy of `size` bytes in this machine's byte order.
    void setData(const void* bytes, int size);
    /// Null until something was read or written, and when there is no memory for all that packed data stands for.
    void* getData();
    int getDataSize() const { return dataSize; }
    int getTag() const { return tag; }
    /// Position in the file's directory.
    int getDirNum() const { return dirNum; }
    unsigned int getVersion() const { return version; }
    void setVersion(unsigned int word) { version = word; }
    /// True when the data is in the other byte order; values that are written into it are, too.
    bool isByteSwapped() const { return byteSwapped; }
    COMPRESSION getCompression() const { return compression; }
    /// How the data is to be packed when the file is written.
    void setCompression(COMPRESSION method) { compression = method; }
    /// What the entry stands for, null when nothing was read from it or written into it yet. Not referenced.
    const void* getHandle() const { return handle; }
    void setHandle(const void* object);
    /// References in the file lead to it from then on.
    void setHandle(const tbBase* object);
    void setHandle(std::nullptr_t) { setHandle(static_cast<const void*>(nullptr)); }

private:
    friend class tbBase;
    friend class tbFile;

    // What the handle points at, so that no reference takes one thing for another.
    enum KIND : unsigned char
    {
        KIND_OTHER, // no object, known to whoever called setHandle()
        KIND_OBJECT,
        KIND_DATA // the class that the tag names, shared data with a reference count
    };
    // How the data lies in the file.
    enum FORM : unsigned char
    {
        FORM_PLAIN,
        FORM_PACKED,
        FORM_UNKNOWN
    };
    enum STATE : unsigned char
    {
        STATE_IDLE,
        STATE_STARTED, // its object exists and is about to read it
        STATE_READING
    };

    tbEntry(tbFile* owner, int tagIndex);
    ~tbEntry();

    static constexpr int FIRST_CAPACITY = 1024;

    /// The file holds the data in the form that the entry's compression stands for.
    void learnForm()
    {
        form = compression == NO_COMPRESSION ? FORM_PLAIN : compression == RLE ? FORM_PACKED : FORM_UNKNOWN;
    }

    /// False when memory is out; the entry stands for nothing then.
    bool bind(const void* object, KIND handleKind);
    bool isLoaded() const { return data || unpacker; }
    void freeData();
    /// Takes over `bytes`, as many as the entry is long, when there is no data.
    void takeData(unsigned char* bytes)
    {
        data = bytes;
        capacity = available = dataSize;
    }
    /// Takes over what reads packed data; nothing of it is unpacked before it is read.
    void takePacked(tbiUnpacker* packed) { unpacker = packed; }
    /// A new block with all that the entry holds, null when memory is out.
    unsigned char* unpackAll() const;
    /// Packed data becomes plain. False when memory is out; nothing has changed then.
    bool unpack();
    /// Gives back what the buffer holds beyond the data.
    void trim();
    template <class Word>
    Word take(Word marker, int alignment);
    /// Takes a value that does not lie in `data`: it is packed, or does not fit whole.
    template <class Word>
    Word takeBeyond(Word marker, std::int64_t place);
    /// Copies bytes that are there, from `place` on.
    void copyBytes(int place, void* bytes, int number);
    template <class Word>
    void put(Word word, int alignment);
    /// Reads as many of `n` words of 4 bytes as there are, and returns how many.
    int takeWords(void* words, int n);
    void putWords(const void* words, int n);
    /// Moves the cursor to a multiple of `alignment` and makes room for `len` bytes there; null when it cannot.
    unsigned char* extend(int len, int alignment);
    bool growTo(std::int64_t end);

    int tag;
    unsigned int fileOffset = 0;
    COMPRESSION compression = NO_COMPRESSION;
    int dataSize = 0;
    unsigned int version = 0;
    int capacity = 0;
    int cursor = 0;
    bool byteSwapped = false;
    STATE state = STATE_IDLE;
    KIND kind : 4 = KIND_OTHER;
    FORM form : 4 = FORM_PLAIN;
    bool failed : 1 = false;
    bool held : 1 = false;         // the file holds a reference on the object
    bool budgeted : 1 = false;     // its size stands in the file's sum
    bool objectRecord : 1 = false; // an object has read itself from it
    bool givenOut : 1 = false;     // its object was handed to the program
    bool holdsScene : 1 = false;   // its object is one, or one is below it
    bool magicKnown : 1 = true;    // the directory record begins with the magic
    bool dataCounted : 1 = false;  // its size stands in the file's account
    unsigned char* data = nullptr;
    tbiUnpacker* unpacker = nullptr; // in place of `data`, where it was packed
    const void* handle = nullptr;
    int dirNum = -1;
    std::uint32_t recordPlace = 0; // of the directory record that it was made from, in the file
    unsigned int expanded = 1;     // objects below and with this one, one for each path
    int available = 0;             // bytes in `data` that can be read
    std::int64_t counted = 0; // bytes of data or of what was made of it, that stand in the file's account
    tbFile* file;
};
