// The data of a file's entries: how it is loaded, and how the whole file is written.
#include <tamber/io/tbFile.h>

#include <tamber/io/tbiFileState.h>
#include <tamber/io/tbiRle.h>
#include <tamber/io/tbiUnpacker.h>
#include <tamber/kernel/tbVersion.h>
#include <tamber/platform/tbiFile.h>

#include <algorithm>

namespace
{

using namespace tbiFileLayout;

constexpr std::int64_t BEST_PACKING = 128; // bytes that one packed byte can stand for
constexpr int LONGEST_UNPACKED = 4096;     // longer data stays packed while it is read

} // namespace

// Reading
bool tbFile::readEntry(tbEntry* entry)
{
    if (descriptor < 1)
        return setError(FILE_NOT_OPEN, "the file is not open");
    if (!entry || entry->file != this)
        return setError(FILE_READ_ERROR, "an entry of another file");
    if (entry->state == tbEntry::STATE_READING)
    {
        report(entry, "the entry is just being read");
        return false;
    }
    if (!loadData(entry))
        return false;
    state->addProgress(entry->dataSize);
    if (entry->state == tbEntry::STATE_STARTED)
        entry->state = tbEntry::STATE_READING;
    return true;
}

bool tbFile::loadData(tbEntry* entry)
{
    if (entry->dataSize < 1)
    {
        reportAt(entry, entry->recordPlace + RECORD_DATA_SIZE, "an entry without data");
        lastError = FILE_NO_DATA;
        return false;
    }
    if (!entry->magicKnown)
    {
        reportAt(entry, entry->recordPlace + RECORD_MAGIC, "a directory record without the magic");
        lastError = FILE_BAD_FORMAT;
        return false;
    }
    switch (entry->form)
    {
    case tbEntry::FORM_PLAIN:
        return loadPlain(entry);
    case tbEntry::FORM_PACKED:
        return loadPacked(entry);
    case tbEntry::FORM_UNKNOWN:
        break;
    }
    reportAt(entry, entry->recordPlace + RECORD_COMPRESSION, "an unknown compression");
    return false;
}

bool tbFile::checkPlace(const tbEntry* entry, std::int64_t length)
{
    const std::int64_t offset = entry->fileOffset;
    if (offset >= state->dataStart && offset + length <= state->window.getLength())
        return true;
    reportAt(entry, entry->recordPlace + RECORD_OFFSET, "the data lies outside the file's data");
    return false;
}

// Entries may share bytes of the file, so what they hold together is limited, not only each of them: all that was ever
// loaded and unpacked, which takes time, and what is there at once, which takes memory. That is the objects, which hold
// no more bytes than their entries, and the data that those have at hand which are just reading themselves.
bool tbFile::spendBudget(tbEntry* entry, std::int64_t packedBytes)
{
    const bool read = entry->state == tbEntry::STATE_STARTED;
    const bool packed = entry->form == tbEntry::FORM_PACKED;
    const std::int64_t work = entry->budgeted ? 0 : entry->dataSize + packedBytes;
    const std::int64_t bytes =
        (entry->dataCounted ? 0 : entry->dataSize) + (read ? tbiFileState::OBJECT_COST : 0);
    const std::int64_t open = !read ? 0 : packed ? packedBytes : entry->dataSize;
    if (open > state->openLeft || !state->spend(work, bytes))
    {
        reportAt(entry, entry->recordPlace + RECORD_DATA_SIZE,
                 "the entries together hold more than a file of this length can");
        return false;
    }
    state->openLeft -= open;
    entry->budgeted = entry->dataCounted = true;
    entry->counted += bytes;
    return true;
}

// For an entry of which neither data nor object is left.
void tbFile::giveBack(tbEntry* entry)
{
    state->bytesLeft += entry->counted;
    entry->counted = 0;
    entry->dataCounted = false;
}

bool tbFile::loadPlain(tbEntry* entry)
{
    if (!checkPlace(entry, entry->dataSize) || !spendBudget(entry, 0))
        return false;
    const std::size_t size = std::size_t(entry->dataSize);
    entry->freeData();
    auto* data = static_cast<unsigned char*>(tbMemory::malloc(size));
    if (!data || !state->window.read(data, size, entry->fileOffset))
    {
        tbMemory::free(data);
        reportAt(entry, entry->fileOffset, "the data cannot be read");
        return false;
    }
    entry->takeData(data);
    return true;
}

bool tbFile::loadPacked(tbEntry* entry)
{
    unsigned char word[4];
    if (!checkPlace(entry, sizeof word))
        return false;
    if (!state->window.read(word, sizeof word, entry->fileOffset))
    {
        reportAt(entry, entry->fileOffset, "the data cannot be read");
        return false;
    }
    const auto length = load<std::uint32_t>(word, entry->byteSwapped);
    if (length < 1 || entry->dataSize > BEST_PACKING * length)
    {
        reportAt(entry, entry->fileOffset, "a packed length that the data does not fit");
        return false;
    }
    if (!checkPlace(entry, std::int64_t(sizeof word) + length) || !spendBudget(entry, length))
        return false;
    auto* packed = static_cast<unsigned char*>(tbMemory::malloc(length));
    const bool read = packed && state->window.read(packed, length, std::int64_t(entry->fileOffset) + 4);
    const long long size = read ? tbiRle::unpackedSize(packed, int(length)) : -1;
    if (size < 0 || size > entry->dataSize || !takePacked(entry, packed, int(length)))
    {
        tbMemory::free(packed);
        reportAt(entry, entry->fileOffset, "packed data that is damaged or gives more than its size");
        return false;
    }
    return true;
}

// Takes over `packed`. What is short is read faster unpacked, and nothing stays packed that takes more than what it
// stands for. False when memory is out.
bool tbFile::takePacked(tbEntry* entry, unsigned char* packed, int length)
{
    if (entry->dataSize > std::max(LONGEST_UNPACKED, length))
    {
        auto* unpacker = new tbiUnpacker(packed);
        if (!unpacker)
            return false;
        entry->freeData();
        entry->takePacked(unpacker);
        return true;
    }
    auto* data = static_cast<unsigned char*>(tbMemory::calloc(std::size_t(entry->dataSize), 1));
    if (!data)
        return false;
    tbiRle::unpack(packed, data);
    tbMemory::free(packed);
    entry->freeData();
    entry->takeData(data);
    return true;
}

// Writing

bool tbFile::write()
{
    if (!canWrite())
        return false;
    lastError = FILE_OK;
    const bool begun = state->writer.hasBegun() || state->writer.begin(state->target.c_str());
    if (begun && writeAll() && finishWrite())
        return true;
    if (lastError == FILE_OK)
        setError(FILE_WRITE_ERROR, "the file cannot be written; what stood there is untouched");
    freeAll();
    return false;
}

// Refuses before anything is touched; the file stays as it is.
bool tbFile::canWrite()
{
    if (descriptor < 1)
        return setError(FILE_NOT_OPEN, "the file is not open");
    if (openMode == MODE_READ)
        return setError(FILE_NOT_WRITABLE, "the file is open for reading only");
    if (state->writeRule)
        return setError(FILE_WRITE_ERROR, state->writeRule);
    std::int64_t length =
        HEADER_SIZE + std::int64_t{TAG_SIZE} * tags.getNum() + std::int64_t{RECORD_SPACE} * entries.getNum();
    for (const tbEntry* entry : entries)
        if (entry->compression != tbEntry::RLE)
            length += entry->dataSize > 0 ? entry->dataSize : 0;
    return length <= LONGEST_FILE || setError(FILE_WRITE_ERROR, "the file would be longer than 2 GiB");
}

bool tbFile::writeAll()
{
    tbiFileWriter& writer = state->writer;
    const bool swap = state->swapOutput;
    unsigned char bytes[HEADER_SIZE] = {};
    header->version = tbGetVersion();
    header->numEntries = std::uint32_t(entries.getNum());
    header->numTags = std::uint32_t(tags.getNum());
    store(bytes + HEADER_MAGIC, MAGIC, swap);
    store(bytes + HEADER_VERSION, header->version, swap);
    store(bytes + HEADER_ENTRIES, header->numEntries, swap);
    store(bytes + HEADER_TAGS, header->numTags, swap);
    if (!tbiWriteFile(writer.getDescriptor(), bytes, HEADER_SIZE, 0) || !writer.seek(HEADER_SIZE))
        return setError(FILE_NOT_OPEN, "the header cannot be written");

    for (const tbiTag* tag : tags)
    {
        unsigned char record[TAG_SIZE];
        store(record + TAG_INDEX, std::uint32_t(tag->index), swap);
        std::memcpy(record + TAG_NAME, tag->name, TAG_NAME_SIZE);
        writer.write(record, TAG_SIZE);
    }
    state->beginProgress(sumOfData());
    const std::int64_t directory = writer.getPosition();
    writer.seek(directory + std::int64_t{RECORD_SPACE} * entries.getNum());
    for (tbEntry* entry : entries)
        if (!writeData(entry))
            return false;
    return writeDirectory(directory);
}

std::int64_t tbFile::sumOfData() const
{
    std::int64_t sum = 0;
    for (const tbEntry* entry : entries)
        sum += entry->dataSize > 0 ? entry->dataSize : 0;
    return sum;
}

bool tbFile::writeData(tbEntry* entry)
{
    const bool loaded = entry->isLoaded();
    if (!loaded && entry->dataSize > 0 && !loadData(entry))
        return false;
    const std::int64_t place = state->writer.getPosition();
    unsigned char* unpacked = entry->unpacker ? entry->unpackAll() : nullptr;
    const bool whole = !entry->unpacker || unpacked;
    if (whole)
        writeBytes(entry, unpacked ? unpacked : entry->data);
    entry->learnForm();
    tbMemory::free(unpacked);
    if (!loaded)
        entry->freeData();
    if (!whole)
        return setError(FILE_WRITE_ERROR, "memory is out");
    if (state->writer.getPosition() > LONGEST_FILE)
        return setError(FILE_WRITE_ERROR, "the file would be longer than 2 GiB");
    entry->fileOffset = unsigned(place);
    state->addProgress(entry->dataSize);
    return true;
}

// All that the entry holds, packed where that is wanted and pays.
void tbFile::writeBytes(tbEntry* entry, const unsigned char* bytes)
{
    tbiFileWriter& writer = state->writer;
    const std::size_t size = std::size_t(std::max(entry->dataSize, 0));
    int packedSize = 0;
    if (entry->compression == tbEntry::RLE)
    {
        auto* packed = static_cast<unsigned char*>(tbMemory::malloc(size));
        if (packed)
            packedSize = tbiRle::pack(bytes, int(size), packed);
        if (packedSize > 0)
        {
            unsigned char word[4];
            store(word, std::uint32_t(packedSize), entry->byteSwapped);
            writer.write(word, sizeof word);
            writer.write(packed, std::size_t(packedSize));
        }
        tbMemory::free(packed);
    }
    if (packedSize == 0)
    {
        entry->compression = tbEntry::NO_COMPRESSION;
        writer.write(bytes, size);
    }
}

bool tbFile::writeDirectory(std::int64_t place)
{
    tbiFileWriter& writer = state->writer;
    const bool swap = state->swapOutput;
    const std::int64_t end = writer.getPosition();
    writer.seek(place);
    for (const tbEntry* entry : entries)
    {
        unsigned char record[RECORD_SIZE];
        // The magic's order is that of the entry's data; everything else is in the file's order.
        store(record + RECORD_MAGIC, MAGIC, entry->byteSwapped);
        store(record + RECORD_TAG, std::uint32_t(entry->tag), swap);
        store(record + RECORD_OFFSET, entry->fileOffset, swap);
        store(record + RECORD_COMPRESSION, std::uint32_t(entry->compression), swap);
        store(record + RECORD_DATA_SIZE, std::uint32_t(entry->dataSize), swap);
        store(record + RECORD_VERSION, entry->version, swap);
        writer.write(record, RECORD_SIZE);
    }
    return writer.seek(end);
}

// The new file takes the old one's place and is open instead of it.
bool tbFile::finishWrite()
{
    if (descriptor != state->writer.getDescriptor())
        tbiCloseFile(descriptor);
    descriptor = -1;
    const std::int64_t length = state->writer.getPosition();
    if (!state->writer.finish(length))
        return false;
    descriptor = tbiOpenFileForUpdate(state->target.c_str());
    state->window.attach(descriptor, length);
    state->setBudget(length);
    state->dataStart =
        HEADER_SIZE + std::int64_t{TAG_SIZE} * tags.getNum() + std::int64_t{RECORD_SIZE} * entries.getNum();
    byteSwapped = state->swapOutput;
    return true;
}
