#include "Info.h"

#include "Record.h"

#include <tamber/kernel/tbVersion.h>

namespace native
{

namespace
{

std::string_view textOf(const Record& record, const Field& field)
{
    return field.kind == FieldKind::TEXT ? record.getText(field) : std::string_view();
}

void takeField(PlugInInfo& info, const Record& record, const Field& field)
{
    const std::string_view name = field.name;
    if (name == "module")
        info.module = printable(textOf(record, field));
    else if (name == "plugIn")
        info.name = printable(textOf(record, field));
    else if (name == "company")
        info.company = printable(textOf(record, field));
    else if (name == "buildDate")
        info.date = printable(textOf(record, field));
    else if (name == "major")
        info.release[0] = record.getInt(field);
    else if (name == "minor")
        info.release[1] = record.getInt(field);
    else if (name == "build")
        info.release[2] = record.getInt(field);
}

std::vector<PlugInInfo> readPlugIns(Image& image, int entry, Findings& findings)
{
    std::vector<PlugInInfo> plugIns;
    std::vector<unsigned char> data;
    if (!image.readData(entry, data, findings))
        return plugIns;
    const Record record(image.getTagName(entry), data, image.getOrder(entry));
    for (const Field& field : record.getFields())
    {
        if (field.item < 0)
            continue;
        plugIns.resize(std::size_t(field.item) + 1);
        takeField(plugIns.back(), record, field);
    }
    return plugIns;
}

} // namespace

std::string versionText(std::uint32_t version)
{
    return std::to_string(tbGetMajorVersion(version)) + "." + std::to_string(tbGetMinorVersion(version)) +
           "." + std::to_string(tbGetBuildVersion(version));
}

FileInfo collectInfo(Image& image, Findings& findings)
{
    FileInfo info;
    info.length = image.getLength();
    info.order = image.getOrder();
    info.version = image.getHeader().version;
    info.numEntries = image.getEntries().size();
    for (const ImageTag& tag : image.getTags())
        info.tags.push_back({printable(tag.getName())});
    int list = NO_ENTRY;
    for (int i = 0; i < image.getNumEntries(); ++i)
    {
        const ImageEntry& entry = image.getEntries()[std::size_t(i)];
        info.bytes += entry.size;
        info.swappedEntries += image.getOrder(i) != info.order ? 1 : 0;
        if (entry.tag >= info.tags.size())
            continue;
        TagInfo& tag = info.tags[entry.tag];
        ++tag.entries;
        tag.bytes += entry.size;
        tag.packed += entry.compression == layout::RLE ? 1 : 0;
        if (list == NO_ENTRY && image.getTagName(i) == "tbPlugIns")
            list = i;
    }
    if (list != NO_ENTRY)
        info.plugIns = readPlugIns(image, list, findings);
    return info;
}

} // namespace native
