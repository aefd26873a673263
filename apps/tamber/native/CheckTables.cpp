// Header, tags and directory: all that is known without reading an entry.
#include "CheckState.h"
#include "FoldedName.h"
#include "Info.h"

#include <tamber/kernel/tbVersion.h>
#include <tamber/kernel/tbiRelease.h>

#include <algorithm>
#include <numeric>

namespace native
{

using namespace layout;

namespace
{

constexpr std::uint32_t OWN_VERSION = tbMakeVersion(tbiRelease::MAJOR, tbiRelease::MINOR, tbiRelease::BUILD);

template <class Bytes>
void checkReserved(CheckState& state, const Bytes& bytes, std::uint64_t offset)
{
    const auto found = std::find_if(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte != 0; });
    if (found != bytes.end())
        state.add(Kind::RESERVED_NOT_ZERO, offset + std::uint64_t(found - bytes.begin()));
}

bool isClassName(std::string_view name)
{
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c > 0x1F && c < 0x7F; });
}

class TagCheck
{
public:
    explicit TagCheck(CheckState& checkState) : state(checkState), tags(checkState.image.getTags()) {}

    void run()
    {
        for (std::size_t i = 0; i < tags.size(); ++i)
            checkTag(i);
        checkTwins();
        checkUse();
    }

private:
    void add(Kind kind, std::size_t tag, std::uint64_t offset, std::string detail = {})
    {
        state.findings.add({kind, NO_ENTRY, printable(tags[tag].getName()),
                            state.image.getTagOffset(int(tag)) + offset, std::move(detail)});
    }

    void checkTag(std::size_t i)
    {
        const ImageTag& tag = tags[i];
        const std::string_view name = tag.getName();
        if (tag.index != i)
            add(Kind::TAG_INDEX, i, 0, std::to_string(tag.index) + " instead of " + std::to_string(i));
        if (name.empty())
            add(Kind::TAG_EMPTY, i, TAG_NAME);
        checkCharacters(i, name);
        if (std::find(tag.field.begin(), tag.field.end(), '\0') == tag.field.end())
            return add(Kind::TAG_UNTERMINATED, i, TAG_NAME);
        const auto rest = tag.field.begin() + std::ptrdiff_t(name.size());
        const auto found = std::find_if(rest, tag.field.end(), [](char c) { return c != 0; });
        if (found != tag.field.end())
            add(Kind::TAG_PADDING, i, TAG_NAME + std::uint64_t(found - tag.field.begin()));
    }

    void checkCharacters(std::size_t i, std::string_view name)
    {
        const auto find = [&](Kind kind, auto isBad)
        {
            const auto found = std::find_if(name.begin(), name.end(), isBad);
            if (found != name.end())
                add(kind, i, TAG_NAME + std::uint64_t(found - name.begin()));
        };
        find(Kind::TAG_CONTROL, [](char c)
             { return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7F; });
        find(Kind::TAG_NOT_ASCII, [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
    }

    // Sorted, tags of one name stand side by side.
    void checkTwins()
    {
        std::vector<std::size_t> sorted(tags.size());
        std::iota(sorted.begin(), sorted.end(), std::size_t{0});
        std::sort(sorted.begin(), sorted.end(),
                  [this](std::size_t a, std::size_t b)
                  {
                      const int folded = compareFolded(tags[a].getName(), tags[b].getName());
                      const int exact = folded != 0 ? folded : tags[a].getName().compare(tags[b].getName());
                      return exact != 0 ? exact < 0 : a < b;
                  });
        for (std::size_t i = 1; i < sorted.size(); ++i)
        {
            const std::string_view before = tags[sorted[i - 1]].getName();
            const std::string_view name = tags[sorted[i]].getName();
            if (compareFolded(before, name) == 0)
                add(before == name ? Kind::TAG_DUPLICATE : Kind::TAG_CASE, sorted[i], TAG_NAME,
                    "as tag " + std::to_string(sorted[i - 1]));
        }
    }

    void checkUse()
    {
        std::vector<bool> used(tags.size());
        for (const ImageEntry& entry : state.image.getEntries())
            if (entry.tag < used.size())
                used[entry.tag] = true;
        for (std::size_t i = 0; i < used.size(); ++i)
            if (!used[i])
                add(Kind::TAG_UNUSED, i, 0);
    }

    CheckState& state;
    const std::vector<ImageTag>& tags;
};

} // namespace

void checkHeader(CheckState& state)
{
    const ImageHeader& header = state.image.getHeader();
    if (header.version > OWN_VERSION)
        state.add(Kind::VERSION_NEWER, HEADER_VERSION, versionText(header.version));
    checkReserved(state, header.reserved, HEADER_RESERVED);
    checkReserved(state, header.reservedEnd, HEADER_RESERVED_END);
    if (header.numEntries == 0)
        state.add(Kind::NO_ENTRIES, HEADER_ENTRIES);
    if (header.numEntries > LARGEST_COUNT)
        state.add(Kind::TOO_MANY_ENTRIES, HEADER_ENTRIES, std::to_string(header.numEntries));
    if (header.numTags > LARGEST_COUNT)
        state.add(Kind::TOO_MANY_TAGS, HEADER_TAGS, std::to_string(header.numTags));
    if (state.image.getLength() > LONGEST_FILE)
        state.add(Kind::FILE_TOO_LONG, LONGEST_FILE, std::to_string(state.image.getLength()) + " bytes");
}

void checkTags(CheckState& state)
{
    TagCheck(state).run();
}

void checkDirectory(CheckState& state)
{
    const Image& image = state.image;
    int swapped = 0;
    int firstSwapped = NO_ENTRY;
    std::vector<int> lists; // of plug-ins
    for (int i = 0; i < image.getNumEntries(); ++i)
    {
        const ImageEntry& entry = image.getEntries()[std::size_t(i)];
        if (entry.tag >= image.getTags().size())
            state.findings.add(image.makeFinding(Kind::ENTRY_TAG, i, image.getRecordOffset(i) + RECORD_TAG,
                                                 std::to_string(entry.tag)));
        if (image.getOrder(i) != image.getOrder() && swapped++ == 0)
            firstSwapped = i;
        if (image.getTagName(i) == "tbPlugIns")
            lists.push_back(i);
    }
    if (swapped > 0)
        state.findings.add(image.makeFinding(Kind::MIXED_ORDER, firstSwapped,
                                             image.getRecordOffset(firstSwapped),
                                             std::to_string(swapped) + " entries"));
    for (std::size_t i = 1; i < lists.size(); ++i)
        state.findings.add(
            image.makeFinding(Kind::PLUGIN_LIST_TWICE, lists[i], image.getRecordOffset(lists[i])));
}

// Once for each tag that has entries, not for each of these.
void checkClassNames(CheckState& state)
{
    const Image& image = state.image;
    std::vector<int> number(image.getTags().size());
    std::vector<int> first(image.getTags().size(), NO_ENTRY);
    for (int i = image.getNumEntries() - 1; i >= 0; --i)
        if (const std::uint32_t tag = image.getEntries()[std::size_t(i)].tag; tag < number.size())
        {
            ++number[tag];
            first[tag] = i;
        }
    for (std::size_t tag = 0; tag < number.size(); ++tag)
    {
        const std::string_view name = image.getTags()[tag].getName();
        if (number[tag] == 0 || !isClassName(name))
            continue; // the tag itself is reported
        const ClassInfo* info = state.facts[std::size_t(first[tag])].info;
        const auto add = [&](Kind kind)
        {
            state.findings.add(image.makeFinding(kind, first[tag],
                                                 image.getRecordOffset(first[tag]) + RECORD_TAG,
                                                 std::to_string(number[tag]) + " entries"));
        };
        if (!info)
            add(Kind::CLASS_UNKNOWN);
        else if (name != info->name)
            add(Kind::CLASS_CASE);
        if (info && info->nature != ClassInfo::OBJECT && info->nature != ClassInfo::DATA)
            add(Kind::CLASS_NOT_CREATABLE);
    }
}

} // namespace native
