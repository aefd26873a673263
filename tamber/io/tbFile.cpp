#include <tamber/io/tbFile.h>

#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiFileState.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbVersion.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiPrintable.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiFile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{

using namespace tbiFileLayout;

constexpr int DEFAULT_DEPTH = 1024;
constexpr unsigned DEFAULT_OBJECTS = 1u << 24;
constexpr int MOST_MESSAGES = 20;
constexpr int MOST_UNKNOWN = 100; // classes that are named
constexpr int LARGEST_COUNT = int(tbListStorage::COUNT_MASK);

std::string printable(const tbiTag* tag)
{
    return tag ? tbiPrintable(tag->name, true) : "(none)";
}

// The beginning of what is said of an entry.
std::string describe(const tbEntry* entry, const tbTList<tbiTag*>& tags)
{
    const tbiTag* tag = tags.indexInRange(entry->getTag()) ? tags[entry->getTag()] : nullptr;
    return "entry " + std::to_string(entry->getDirNum()) + " (" + printable(tag) + "), byte ";
}

std::uint64_t hashName(const char* name)
{
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (int i = 0; i < TAG_NAME_SIZE - 1 && name[i] != 0; ++i)
        hash = (hash ^ static_cast<unsigned char>(name[i])) * 0x100000001B3u;
    return hash;
}

std::uint32_t hashHandle(const void* handle)
{
    const std::uint64_t mixed = std::uint64_t(reinterpret_cast<std::uintptr_t>(handle)) * 0x9E3779B97F4A7C15u;
    return std::uint32_t(mixed >> 32);
}

// Classes whose entries stand for no objects.
bool isDataClass(const char* className)
{
    for (const char* name : {"tbArray", "tbVertexArray", "tbPlugIns"})
        if (std::strcmp(className, name) == 0)
            return true;
    return false;
}

bool isMagic(const unsigned char* bytes, bool& swap)
{
    const auto magic = load<std::uint32_t>(bytes, false);
    swap = magic == MAGIC_SWAPPED;
    return swap || magic == MAGIC;
}

} // namespace

tbFile::tbFile() : maxDepth(DEFAULT_DEPTH), maxObjects(DEFAULT_OBJECTS)
{
    static_assert(sizeof(tbiFileState) <= STATE_SIZE);
    state = new (static_cast<void*>(statePlace)) tbiFileState;
}

tbFile::~tbFile()
{
    close();
    state->~tbiFileState();
}

// Errors

const char* tbFile::getErrorText() const
{
    composeFault();
    return state->errorText.c_str();
}

// Texts are for people: one that there is no memory for gives way to a shorter one.
bool tbFile::setError(FILE_ERROR error, const char* rule)
{
    lastError = error;
    state->fault.entry = nullptr;
    if (!tbiWithoutThrow(false, [&] { return state->setErrorText(rule); }))
        state->errorText = "memory is out";
    return false;
}

// A fault of the tables, at a byte of the file.
bool tbFile::failAt(FILE_ERROR error, std::int64_t place, const char* rule)
{
    setError(error, rule);
    tbiWithoutThrow([&] { setError(error, ("byte " + std::to_string(place) + ": " + rule).c_str()); });
    return false;
}

// A fault of an entry's data, at the cursor.
void tbFile::report(const tbEntry* entry, const char* rule)
{
    reportPlace(entry, entry->cursor, ": ", rule);
}

// A fault of an entry at a byte of the file: its directory record, or data that cannot be had.
void tbFile::reportAt(const tbEntry* entry, std::int64_t place, const char* rule)
{
    reportPlace(entry, place, " of the file: ", rule);
}

// A fault of the reference that was just read, or of an entry that the program asked for.
void tbFile::reportReference(const tbEntry* referrer, int index, const char* rule)
{
    if (referrer)
        reportPlace(referrer, referrer->cursor - 4, ": ", rule);
    else if (const tbEntry* target = getEntry(index))
        reportAt(target, target->recordPlace + RECORD_TAG, rule);
    else
    {
        setError(FILE_READ_ERROR, rule);
        printError();
    }
}

void tbFile::reportPlace(const tbEntry* entry, std::int64_t place, const char* whatOf, const char* rule)
{
    lastError = FILE_READ_ERROR;
    state->fault.set(entry, place, whatOf, rule);
    printError();
}

// The text of a fault is made when it is printed or asked for, and before its entry goes: a file may have millions.
void tbFile::composeFault() const
{
    const tbEntry* entry = std::exchange(state->fault.entry, nullptr);
    if (!entry)
        return;
    const tbiFault& fault = state->fault;
    const bool composed = tbiWithoutThrow(false,
                                          [&]
                                          {
                                              std::string text = describe(entry, tags) +
                                                                 std::to_string(fault.place) + fault.whatOf +
                                                                 fault.rule;
                                              if (fault.namesClass)
                                                  text += " " + printable(tags[entry->tag]);
                                              return state->setErrorText(text.c_str());
                                          });
    if (!composed)
        state->errorText = "memory is out";
}

void tbFile::printError()
{
    if (state->numMessages < MOST_MESSAGES)
        tbMessage("%s\n", getErrorText());
    else if (state->numMessages == MOST_MESSAGES)
        tbMessage("%s: what else is damaged is not listed\n", state->label.c_str());
    ++state->numMessages;
}

void tbFile::reportUnknownClass(const tbEntry* entry)
{
    tbiTag* tag = tags[entry->tag];
    state->fault.set(entry, std::int64_t{entry->recordPlace} + RECORD_TAG,
                     " of the file: ", "no plug-in supplies the class", true);
    if (std::exchange(tag->reported, true) || state->numUnknown > MOST_UNKNOWN)
        return;
    const bool isListed = ++state->numUnknown <= MOST_UNKNOWN;
    tbiWithoutThrow(
        [&]
        {
            if (isListed)
                tbMessage("%s: no plug-in supplies the class %s, its objects are left out\n",
                          state->label.c_str(), printable(tag).c_str());
            else
                tbMessage("%s: which other classes no plug-in supplies is not listed\n",
                          state->label.c_str());
        });
}

void tbFile::failWrite(const char* rule)
{
    if (!state->writeRule)
        state->writeRule = rule;
    setError(FILE_WRITE_ERROR, rule);
}

unsigned int tbFile::getVersion() const
{
    return header ? header->version : 0;
}

// Opening and closing

bool tbFile::open(const char* path, const char* mode)
{
    close();
    lastError = FILE_OK;
    return tbiWithoutThrow(false, [=, this] { return openAs(path, mode); }) || refuse(FILE_READ_ERROR);
}

// Closes after a failure, which was for want of memory when nobody has named another reason.
bool tbFile::refuse(FILE_ERROR errorWithoutMemory)
{
    if (lastError == FILE_OK)
        setError(errorWithoutMemory, "memory is out");
    freeAll();
    return false;
}

bool tbFile::openAs(const char* path, const char* mode)
{
    state->open(path, path ? tbiPrintable(path, false) : "(null)");
    if (!path || !mode || mode[0] != 'r')
        return setError(FILE_CANNOT_OPEN, "no path, or an unknown mode");
    openMode = mode[1] == 'w' ? MODE_READ_WRITE : MODE_READ;
    const tbiMemoryWatch memory;
    descriptor = openMode == MODE_READ ? tbiOpenFile(path) : tbiOpenFileForUpdate(path);
    tbiSetText(fileName, path);
    if (memory.ranOut())
        return false;
    if (descriptor < 1)
        return setError(FILE_CANNOT_OPEN, "not a regular file that can be opened");
    return readTables();
}

bool tbFile::readTables()
{
    const std::int64_t length = tbiFileLength(descriptor);
    if (length < 1)
        return failAt(FILE_EMPTY, 0, "the file is empty");
    state->window.attach(descriptor, length);
    unsigned char bytes[HEADER_SIZE];
    if (!state->window.read(bytes, HEADER_SIZE, 0))
        return failAt(FILE_READ_ERROR, length, "the file ends within its header");
    if (!isMagic(bytes + HEADER_MAGIC, byteSwapped))
        return failAt(FILE_BAD_FORMAT, HEADER_MAGIC, "not a file of this format");
    header = new tbiFileHeader;
    if (!header)
        return false;
    header->version = load<std::uint32_t>(bytes + HEADER_VERSION, byteSwapped);
    header->numEntries = load<std::uint32_t>(bytes + HEADER_ENTRIES, byteSwapped);
    header->numTags = load<std::uint32_t>(bytes + HEADER_TAGS, byteSwapped);
    if (header->version > tbGetVersion())
        tbMessage("%s: written by a newer release, %u.%u\n", state->label.c_str(),
                  tbGetMajorVersion(header->version), tbGetMinorVersion(header->version));
    if (header->numEntries == 0)
        return failAt(FILE_READ_ERROR, HEADER_ENTRIES, "the file has no entries");
    const std::int64_t tagBytes = std::int64_t{TAG_SIZE} * header->numTags;
    const std::int64_t recordBytes = std::int64_t{RECORD_SIZE} * header->numEntries;
    state->dataStart = HEADER_SIZE + tagBytes + recordBytes;
    state->handlesKnown = false;
    if (state->dataStart > length || header->numEntries > unsigned(LARGEST_COUNT) ||
        header->numTags > unsigned(LARGEST_COUNT))
        return failAt(FILE_READ_ERROR, HEADER_ENTRIES, "more tags and entries than the file can hold");
    state->setBudget(length);

    const std::size_t tableBytes = std::size_t(tagBytes + recordBytes);
    auto* tables = static_cast<unsigned char*>(tbMemory::malloc(tableBytes));
    bool read = tables && state->window.read(tables, tableBytes, HEADER_SIZE);
    if (tables && !read)
        failAt(FILE_READ_ERROR, HEADER_SIZE, "the file ends within its tables");
    read = read && readTags(tables, int(header->numTags)) &&
           readDirectory(tables + tagBytes, int(header->numEntries));
    tbMemory::free(tables);
    return read;
}

bool tbFile::readTags(const unsigned char* records, int number)
{
    tags.setSize(number);
    for (int i = 0; i < number; ++i, records += TAG_SIZE)
    {
        if (load<std::uint32_t>(records + TAG_INDEX, byteSwapped) != std::uint32_t(i))
        {
            const std::string text = "tag " + std::to_string(i) + ", byte " +
                                     std::to_string(HEADER_SIZE + std::int64_t{TAG_SIZE} * i) +
                                     ": a tag stands at another place than its index says";
            return setError(FILE_READ_ERROR, text.c_str());
        }
        char name[TAG_NAME_SIZE];
        std::memcpy(name, records + TAG_NAME, TAG_NAME_SIZE);
        name[TAG_NAME_SIZE - 1] = 0;
        if (!addTag(name))
            return setError(FILE_READ_ERROR, "memory is out");
    }
    return true;
}

bool tbFile::readDirectory(const unsigned char* records, int number)
{
    entries.setSize(number + 1); // a list makes more room as soon as its last slot is wanted
    if (!state->makeDirectory(number))
        return setError(FILE_READ_ERROR, "memory is out");
    for (int i = 0; i < number; ++i, records += RECORD_SIZE)
    {
        const int tagIndex = int(load<std::uint32_t>(records + RECORD_TAG, byteSwapped));
        auto* entry = new (static_cast<void*>(state->directory + i)) tbEntry(this, tagIndex);
        if (!addEntry(entry))
            return setError(FILE_READ_ERROR, "memory is out");
        entry->recordPlace = std::uint32_t(HEADER_SIZE + std::int64_t{TAG_SIZE} * tags.getNum() +
                                           std::int64_t{RECORD_SIZE} * i);
        bool swap = false;
        entry->magicKnown = isMagic(records + RECORD_MAGIC, swap);
        entry->byteSwapped = swap;
        entry->fileOffset = load<std::uint32_t>(records + RECORD_OFFSET, byteSwapped);
        entry->compression =
            tbEntry::COMPRESSION(load<std::uint32_t>(records + RECORD_COMPRESSION, byteSwapped));
        entry->learnForm();
        entry->dataSize = int(load<std::uint32_t>(records + RECORD_DATA_SIZE, byteSwapped));
        entry->version = load<std::uint32_t>(records + RECORD_VERSION, byteSwapped);
        if (entry->fileOffset == 0)
        {
            const tbiTag* tag = tags.indexInRange(entry->tag) ? tags[entry->tag] : nullptr;
            tbMessage("Bad Directory Entry: %d tag: %s\n", i, printable(tag).c_str());
        }
    }
    return true;
}

bool tbFile::create(const char* path)
{
    close();
    lastError = FILE_OK;
    return tbiWithoutThrow(false, [=, this] { return createAs(path); }) || refuse(FILE_CANNOT_OPEN);
}

bool tbFile::createAs(const char* path)
{
    state->open(path, path ? tbiPrintable(path, false) : "(null)");
    if (!state->writer.begin(path))
        return setError(FILE_CANNOT_OPEN, "the file cannot be made or replaced");
    descriptor = state->writer.getDescriptor();
    openMode = MODE_CREATE;
    header = new tbiFileHeader;
    if (!header)
        return false;
    header->version = tbGetVersion();
    return true;
}

bool tbFile::setByteSwapped(bool swapped)
{
    if (openMode != MODE_CREATE || entries.getNum() > 0)
        return false;
    byteSwapped = state->swapOutput = swapped;
    return true;
}

void tbFile::setCompression(tbEntry::COMPRESSION method)
{
    state->compression = method;
}

void tbFile::setProgressFunc(tbProgressFunc func)
{
    state->progress = func;
    state->beginProgress(sumOfData());
}

bool tbFile::save(const tbBase* root)
{
    const tbiMemoryWatch memory;
    if (!root || !root->write(this, nullptr))
        failWrite("the root cannot be written");
    tbPlugIn::savePlugIns(this);
    if (memory.ranOut())
        failWrite("memory is out");
    return write();
}

void tbFile::close()
{
    freeAll();
}

void tbFile::freeAll()
{
    composeFault();
    dropHolds();
    if (descriptor != state->writer.getDescriptor())
        tbiCloseFile(descriptor);
    state->writer.abandon();
    descriptor = -1;
    openMode = MODE_CLOSED;
    for (tbEntry* entry : entries)
        dispose(entry);
    entries.setSize(0);
    for (tbiTag* tag : tags)
        delete tag;
    tags.setSize(0);
    delete header;
    header = nullptr;
    tbMemory::free(fileName);
    fileName = nullptr;
    byteSwapped = false;
    state->close();
}

bool tbFile::isTamberFormat(const char* path)
{
    const int descriptor = tbiOpenFile(path);
    if (descriptor < 1)
        return false;
    unsigned char magic[4];
    bool swap = false;
    const bool known = tbiFileLength(descriptor) > HEADER_SIZE &&
                       tbiReadFile(descriptor, magic, sizeof magic, 0) && isMagic(magic, swap);
    tbiCloseFile(descriptor);
    return known;
}

// Tags

tbiTag* tbFile::addTag(const char* className)
{
    auto* tag = new tbiTag;
    if (!tag)
        return nullptr;
    tag->index = tags.getNum();
    std::strncpy(tag->name, className, TAG_NAME_SIZE - 1);
    tag->isData = isDataClass(tag->name);
    if (tags.add(tag) >= 0)
        return tag;
    delete tag;
    return nullptr;
}

int tbFile::newTag(const char* className)
{
    if (!className)
        return -1;
    const int known = findTag(className);
    if (known >= 0)
        return known;
    const tbiTag* tag = addTag(className);
    if (!tag)
        failWrite("more classes than a file can hold");
    return tag ? tag->index : -1;
}

int tbFile::findTag(const char* className) const
{
    if (!className)
        return -1;
    const auto isNamed = [=](const tbiTag* tag)
    { return std::strncmp(tag->name, className, TAG_NAME_SIZE - 1) == 0; };
    if (!learnTagNames())
    {
        const auto found = std::find_if(tags.begin(), tags.end(), isNamed);
        return found == tags.end() ? -1 : (*found)->index;
    }
    const tbiTagName wanted = {hashName(className), 0};
    const auto& names = state->tagNames;
    for (auto name = std::lower_bound(names.begin(), names.end(), wanted);
         name != names.end() && name->hash == wanted.hash; ++name)
        if (isNamed(tags[name->tag]))
            return name->tag;
    return -1;
}

// Nobody asks for the names of most files. False when memory is out.
bool tbFile::learnTagNames() const
{
    auto& names = state->tagNames;
    const auto known = std::ptrdiff_t(names.size());
    const auto number = std::size_t(tags.getNum());
    if (names.capacity() < number &&
        !tbiWithoutThrow(false, [&] { return names.reserve(number + number / 2), true; }))
        return false;
    for (int i = int(known); i < tags.getNum(); ++i)
        names.push_back({hashName(tags[i]->name), i});
    std::sort(names.begin() + known, names.end());
    std::inplace_merge(names.begin(), names.begin() + known, names.end());
    return true;
}

const char* tbFile::getTagDesc(int tag) const
{
    return tags.indexInRange(tag) ? tags[tag]->name : nullptr;
}

// Entries

// False when memory is out, or there are more than a file can hold.
bool tbFile::addEntry(tbEntry* entry)
{
    entry->dirNum = entries.add(entry);
    if (entry->dirNum < 0)
        return false;
    if (tags.indexInRange(entry->tag) && tags[entry->tag]->firstEntry < 0)
        tags[entry->tag]->firstEntry = entry->dirNum;
    return true;
}

void tbFile::dispose(tbEntry* entry)
{
    if (state->isInDirectory(entry))
        entry->~tbEntry();
    else
        delete entry;
}

tbEntry* tbFile::newEntry(int tag)
{
    if (!tags.indexInRange(tag))
        return nullptr;
    auto* entry = new tbEntry(this, tag);
    if (entry && addEntry(entry))
    {
        entry->byteSwapped = state->swapOutput;
        entry->compression = state->compression;
        return entry;
    }
    delete entry;
    failWrite("more entries than a file can hold");
    return nullptr;
}

tbEntry* tbFile::newDataEntry(const char* className, const void* data)
{
    tbEntry* entry = newEntry(newTag(className));
    if (!entry)
        return nullptr;
    entry->bind(data, tbEntry::KIND_DATA);
    entry->setVersion(tbGetVersion());
    return entry;
}

tbEntry* tbFile::getEntry(int index) const
{
    return entries.indexInRange(index) ? entries[index] : nullptr;
}

tbEntry* tbFile::findEntry(const void* handle) const
{
    if (!handle)
        return nullptr;
    tbEntry* last = nullptr;
    if (!learnHandles())
    {
        for (tbEntry* entry : entries)
            if (entry->handle == handle)
                last = entry;
        return last;
    }
    state->handles.visitAll(hashHandle(handle),
                            [&](tbEntry* entry)
                            {
                                if (entry->handle == handle && (!last || entry->dirNum > last->dirNum))
                                    last = entry;
                            });
    return last;
}

// What was read is looked for by its address when something is written, if ever. False when memory is out.
bool tbFile::learnHandles() const
{
    for (int i = 0; i < entries.getNum() && !state->handlesKnown; ++i)
    {
        tbEntry* entry = entries[i];
        if (!entry->handle || state->handles.add(hashHandle(entry->handle), entry))
            continue;
        state->handles.clear();
        return false;
    }
    state->handlesKnown = true;
    return true;
}

bool tbFile::rebind(tbEntry* entry, const void* object)
{
    if (entry->handle && state->handlesKnown)
        state->handles.remove(hashHandle(entry->handle), entry);
    entry->handle = nullptr;
    if (object && state->handlesKnown && !state->handles.add(hashHandle(object), entry))
    {
        failWrite("memory is out");
        return false;
    }
    entry->handle = object;
    return true;
}

tbEntry* tbFile::findEntry(int tag) const
{
    if (!tags.indexInRange(tag))
        return nullptr;
    if (!state->firstEntriesKnown)
    {
        for (tbiTag* each : tags)
            each->firstEntry = -1;
        for (int i = entries.getNum() - 1; i >= 0; --i)
            if (tags.indexInRange(entries[i]->tag))
                tags[entries[i]->tag]->firstEntry = i;
        state->firstEntriesKnown = true;
    }
    return getEntry(tags[tag]->firstEntry);
}

tbEntry* tbFile::findEntry(const char* className) const
{
    return findEntry(findTag(className));
}

tbEntry* tbFile::findNextEntry(int tag, const tbEntry* after) const
{
    if (!after)
        return findEntry(tag);
    if (!tags.indexInRange(tag) || after->file != this)
        return nullptr;
    for (int i = after->dirNum + 1; i < entries.getNum(); ++i)
        if (entries[i]->tag == tag)
            return entries[i];
    return nullptr;
}

bool tbFile::removeEntry(tbEntry* entry)
{
    if (!entry)
        return true;
    if (entry->file != this || entry->state != tbEntry::STATE_IDLE)
        return false;
    const int gap = entry->dirNum;
    entries.removeIndex(gap);
    if (gap < entries.getNum())
        entries[gap]->dirNum = gap;
    state->firstEntriesKnown = false;
    giveBack(entry);
    composeFault();
    dropHold(entry);
    rebind(entry, nullptr);
    dispose(entry);
    return true;
}
