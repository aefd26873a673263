#include "Check.h"

#include "CheckState.h"

#include <array>
#include <iterator>

namespace native
{

namespace
{

// Which class descends from which, so that a reference is judged without comparing names.
class Families
{
public:
    Families()
    {
        const auto known = knownClasses();
        ancestors.resize(known.size());
        for (std::size_t i = 0; i < known.size(); ++i)
            for (const ClassInfo& ancestor : known)
                ancestors[i].push_back(descendsFrom(known[i].name, ancestor.name));
    }
    bool isOf(const ClassInfo* info, const ClassInfo* ancestor) const
    {
        const ClassInfo* first = knownClasses().data();
        return ancestors[std::size_t(info - first)][std::size_t(ancestor - first)];
    }

private:
    std::vector<std::vector<bool>> ancestors;
};

/// The class of each entry, looked up once for each tag.
void findClasses(CheckState& state)
{
    const auto& tags = state.image.getTags();
    std::vector<const ClassInfo*> classes;
    classes.reserve(tags.size());
    for (const ImageTag& tag : tags)
    {
        // Classes of data are found by their exact name.
        const ClassInfo* info = findClass(tag.getName());
        const bool missed = info && info->nature == ClassInfo::DATA && tag.getName() != info->name;
        classes.push_back(missed ? nullptr : info);
    }
    const auto& entries = state.image.getEntries();
    state.facts.resize(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i].tag < classes.size())
            state.facts[i].info = classes[entries[i].tag];
}

void checkEntry(CheckState& state, int number, std::vector<unsigned char>& data)
{
    EntryFacts& facts = state.facts[std::size_t(number)];
    facts.firstEdge = std::uint32_t(state.edges.size());
    facts.readable = state.image.readData(number, data, state.findings);
    if (!facts.readable)
        return;
    const Record record(state.image.getTagName(number), data, state.image.getOrder(number));
    const EntryRecord entry{state, number, facts, record};
    checkFields(entry);
    checkClassRules(entry);
    facts.numEdges = std::uint32_t(state.edges.size()) - facts.firstEdge;
}

} // namespace

bool isOf(const ClassInfo* info, const ClassInfo* ancestor)
{
    static const Families families;
    return info && ancestor && families.isOf(info, ancestor);
}

void CheckState::addInData(Kind kind, int entry, std::uint32_t place, std::string detail)
{
    const ImageEntry& stored = image.getEntries()[std::size_t(entry)];
    const bool packed = stored.compression == layout::RLE;
    if (packed)
        detail += (detail.empty() ? "byte " : ", byte ") + std::to_string(place) + " of the unpacked data";
    findings.add(image.makeFinding(kind, entry, std::uint64_t(stored.offset) + (packed ? 0 : place),
                                   std::move(detail)));
}

void EntryRecord::add(Kind kind, const Field& field, std::string detail) const
{
    add(kind, field.offset, std::string(field.name) + (detail.empty() ? "" : ": " + detail));
}

void checkImage(Image& image, Findings& findings)
{
    if (!image.hasHeader())
        return;
    CheckState state{image, findings, {}, {}, {}, {}, false};
    checkHeader(state);
    checkTags(state);
    checkDirectory(state);
    checkPlaces(state);
    findClasses(state);
    checkClassNames(state);
    state.lastParent.assign(state.facts.size(), NO_ENTRY);
    std::vector<unsigned char> data;
    for (const int entry : image.orderByOffset())
        checkEntry(state, entry, data);
    checkMeshes(state);
    checkGraph(state);
    findings.sort();
}

} // namespace native
