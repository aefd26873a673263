#include "tbiZip.h"

#include "tbiCheckSums.h"
#include "tbiModelError.h"

namespace
{
constexpr std::size_t LARGEST = 0xFFFF0000u;
constexpr std::uint16_t VERSION = 20;   // that a reader needs
constexpr std::uint16_t FIRST_DAY = 33; // 1 January 1980: equal models give equal files

void put(std::string& bytes, std::uint32_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += char(value >> (8 * i) & 0xFF);
}

/// What stands both before a file and in the directory.
void putDescription(std::string& bytes, const std::string& name, const std::string& content)
{
    for (const std::uint32_t value : {std::uint32_t(VERSION), 0u, 0u, 0u, std::uint32_t(FIRST_DAY)})
        put(bytes, value, 2);
    put(bytes, tbiCrc32(content.data(), content.size()), 4);
    put(bytes, std::uint32_t(content.size()), 4);
    put(bytes, std::uint32_t(content.size()), 4);
    put(bytes, std::uint32_t(name.size()), 2);
    put(bytes, 0, 2); // nothing extra
}
} // namespace

void tbiZip::add(const std::string& name, const std::string& bytes)
{
    if (bytes.size() > LARGEST || files.size() > LARGEST - bytes.size())
        throw tbiModelError("the file would be larger than 4 GiB");
    put(directory, 0x02014B50, 4);
    put(directory, VERSION, 2);
    putDescription(directory, name, bytes);
    put(directory, 0, 4); // no comment, first disk
    put(directory, 0, 2); // not known to be text
    put(directory, 0, 4); // no attributes
    put(directory, std::uint32_t(files.size()), 4);
    directory += name;
    put(files, 0x04034B50, 4);
    putDescription(files, name, bytes);
    files += name;
    files += bytes;
    ++number;
}

std::string tbiZip::finish() const
{
    std::string archive = files + directory;
    put(archive, 0x06054B50, 4);
    put(archive, 0, 4);
    put(archive, number, 2);
    put(archive, number, 2);
    put(archive, std::uint32_t(directory.size()), 4);
    put(archive, std::uint32_t(files.size()), 4);
    put(archive, 0, 2);
    return archive;
}
