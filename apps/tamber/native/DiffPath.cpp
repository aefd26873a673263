#include "DiffPath.h"

#include <functional>

namespace native
{

namespace
{

constexpr std::size_t LONGEST_LABEL = 80;
constexpr std::size_t FIRST_SHOWN = 4;
constexpr std::size_t LAST_SHOWN = 16;

} // namespace

bool DiffSide::read(std::int32_t entry, std::vector<unsigned char>& data)
{
    return image.readData(entry, data, ignored);
}

std::string DiffSide::nameOf(std::int32_t entry)
{
    std::vector<unsigned char> data;
    if (!descendsFrom(getClass(entry), "tbBase") || !read(entry, data))
        return {};
    const Record record(getClass(entry), data, image.getOrder(entry));
    const Field* name = record.find("name");
    return name ? std::string(record.getText(*name)) : std::string();
}

std::string DiffSide::labelOf(std::int32_t entry)
{
    const std::string name = nameOf(entry).substr(0, LONGEST_LABEL);
    return printable(name.empty() ? getClass(entry) : std::string_view(name));
}

std::uint64_t DiffSide::hashOf(std::int32_t entry)
{
    std::uint64_t& hash = hashes[std::size_t(entry)];
    if (hash == 0)
        hash = std::hash<std::string>()(std::string(getClass(entry)) + '/' + nameOf(entry)) | 1;
    return hash;
}

std::string indexed(const char* field, std::int32_t index)
{
    return index < 0 ? std::string(field) : std::string(field) + "[" + std::to_string(index) + "]";
}

std::string pathOf(const std::vector<DiffStep>& steps, std::int32_t step, DiffSide& a)
{
    std::vector<std::int32_t> chain; // from the last to the first
    for (; step >= 0; step = steps[std::size_t(step)].parent)
        chain.push_back(step);
    std::string path;
    for (std::size_t i = chain.size(); i > 0; --i)
    {
        const std::size_t passed = chain.size() - i;
        if (passed == FIRST_SHOWN && i > LAST_SHOWN + 1)
        {
            path += "/...(" + std::to_string(i - LAST_SHOWN) + " more)...";
            i = LAST_SHOWN + 1;
            continue;
        }
        const DiffStep& at = steps[std::size_t(chain[i - 1])];
        if (at.parent < 0)
            path = (at.a == 0 ? "/" : "entry " + std::to_string(at.a) + " ") + a.labelOf(at.a);
        else if (at.isChild)
            path += "/" + indexed(a.labelOf(at.a).c_str(), at.index);
        else
            path += "." + indexed(at.field, at.index);
    }
    return path;
}

} // namespace native
