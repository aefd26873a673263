#include <tests/support/FileBuilder.h>

#include <algorithm>

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

Record& Record::name(const std::string& text)
{
    return integer(int(text.size()) + 1).bytes(text + '\0');
}

Record& Record::list(const std::vector<int>& numbers)
{
    integer(int(numbers.size()));
    for (const int number : numbers)
        integer(number);
    return *this;
}

Record& Record::object(const std::vector<int>& attributes)
{
    return integer(0).word(0).list(attributes);
}

Record& Record::plugIns(const std::vector<std::string>& modules, int number)
{
    integer(number);
    for (const std::string& module : modules)
        integer(0).integer(0).integer(0).name(module).integer(1).integer(2).integer(3);
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

FileBuilder::Entry& FileBuilder::addPacked(const std::string& className, const std::string& data)
{
    std::string pairs;
    for (std::size_t i = 0, end; i < data.size(); i = end)
    {
        for (end = i + 1; end < std::min(data.size(), i + 255) && data[end] == data[i];)
            ++end;
        pairs += {char(end - i), data[i]};
    }
    pairs += '\0';
    Entry& entry = add(className, inOrder(pairs.size(), 4, swapped) + pairs);
    entry.compression = 1;
    entry.size = std::uint32_t(data.size());
    return entry;
}

void FileBuilder::addOnSameBytes(const std::string& className, int number)
{
    Entry entry = entries.back();
    entry.data.clear();
    entry.onSameBytes = true;
    for (int i = 0; i < number; ++i)
    {
        entry.tag = add(className, {}).tag;
        entries.back() = entry;
    }
}

std::string FileBuilder::build() const
{
    std::string out;
    const auto put = [&](std::size_t value) { out += inOrder(value, 4, swapped); };
    put(0xBA773265);
    put(version);
    out.append(64, '\0');
    put(numEntries < 0 ? entries.size() : std::size_t(numEntries));
    put(tags.size());
    out.append(16, '\0');
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        put(i);
        std::string name = tags[i];
        name.resize(64, '\0');
        out += name;
    }
    std::size_t place = out.size() + (24 + gap) * entries.size();
    std::size_t start = place;
    std::string data;
    for (const Entry& entry : entries)
    {
        start = entry.onSameBytes ? start : place;
        out += inOrder(entry.magic, 4, false);
        put(entry.tag);
        put(entry.offset != 0 ? entry.offset : start);
        put(entry.compression);
        put(entry.size);
        put(entry.version);
        data += entry.data;
        place += entry.data.size();
    }
    out.append(gap * entries.size(), '\0');
    return out + data;
}

std::string buildFile(const Entries& entries)
{
    FileBuilder builder;
    for (const auto& [className, data] : entries)
        builder.add(className, data);
    return builder.build();
}
} // namespace tbtest
