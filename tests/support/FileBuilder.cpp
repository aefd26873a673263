#include <tests/support/FileBuilder.h>

#include <algorithm>
#include <bit>

namespace tbtest
{
namespace
{
// The bytes of `value` in this machine's order or in the other.
std::string inOrder(std::uint64_t value, int width, bool swapped)
{
    std::string bytes;
    for (int i = 0; i < width; ++i)
        bytes += char(value >> (8 * i));
    if ((std::endian::native == std::endian::big) != swapped)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}
} // namespace

Record& Record::put(std::uint64_t value, int width, int alignment)
{
    while (data.size() % std::size_t(alignment) != 0)
        data += '\0';
    data += inOrder(value, width, swapped);
    return *this;
}

Record& Record::byte(int value)
{
    return put(std::uint64_t(value), 1, 1);
}

Record& Record::word(int value)
{
    return put(std::uint64_t(value), 2, 1);
}

Record& Record::integer(int value)
{
    return put(std::uint64_t(value), 4, 4);
}

Record& Record::number(float value)
{
    return put(std::bit_cast<std::uint32_t>(value), 4, 4);
}

Record& Record::wide(double value)
{
    return put(std::bit_cast<std::uint64_t>(value), 8, 8);
}

Record& Record::bytes(const std::string& text)
{
    data += text;
    return *this;
}

Record& Record::name(const std::string& text)
{
    integer(int(text.size()) + 1);
    data += text;
    data += '\0';
    return *this;
}

Record& Record::object(const std::vector<int>& attributes)
{
    integer(0).word(0).integer(int(attributes.size()));
    for (const int attribute : attributes)
        integer(attribute);
    return *this;
}

FileBuilder::Entry& FileBuilder::add(const std::string& className, const std::string& data)
{
    const auto known = std::find(tags.begin(), tags.end(), className);
    Entry entry;
    entry.tag = std::uint32_t(known - tags.begin());
    if (known == tags.end())
        tags.push_back(className);
    entry.data = data;
    entry.size = std::uint32_t(data.size());
    if (swapped)
        entry.magic = 0x653277BA;
    return entries.emplace_back(entry);
}

void FileBuilder::put(std::string& out, std::uint32_t value) const
{
    out += inOrder(value, 4, swapped);
}

std::string FileBuilder::build() const
{
    std::string out;
    put(out, 0xBA773265);
    put(out, version);
    out.append(64, '\0');
    put(out, numEntries < 0 ? std::uint32_t(entries.size()) : std::uint32_t(numEntries));
    put(out, numTags < 0 ? std::uint32_t(tags.size()) : std::uint32_t(numTags));
    out.append(16, '\0');
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        put(out, std::uint32_t(i));
        std::string name = tags[i];
        name.resize(64, '\0');
        out += name;
    }
    std::size_t place = out.size() + 112 * entries.size();
    std::string data;
    for (const Entry& entry : entries)
    {
        out += inOrder(entry.magic, 4, false);
        put(out, entry.tag);
        put(out, entry.offset != 0 ? entry.offset : std::uint32_t(place));
        put(out, entry.compression);
        put(out, entry.size);
        put(out, entry.version);
        data += entry.data;
        place += entry.data.size();
    }
    out.append(88 * entries.size(), '\0');
    return out + data;
}
} // namespace tbtest
