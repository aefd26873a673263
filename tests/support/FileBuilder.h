// Composes files of the native format byte by byte, in either byte order and with any fault.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tbtest
{
/// The data of one entry, with the gaps that its alignment needs.
class Record
{
public:
    explicit Record(bool otherOrder = false) : swapped(otherOrder) {}

    Record& byte(int value) { return put(std::uint64_t(value), 1, 1); }
    Record& word(int value) { return put(std::uint64_t(value), 2, 1); }
    Record& integer(int value) { return put(std::uint64_t(value), 4, 4); }
    Record& number(float value) { return put(std::bit_cast<std::uint32_t>(value), 4, 4); }
    Record& wide(double value) { return put(std::bit_cast<std::uint64_t>(value), 8, 8); }
    Record& bytes(const std::string& text)
    {
        data += text;
        return *this;
    }
    /// Their number, then the numbers.
    Record& list(const std::vector<int>& numbers);
    /// A length with its terminating zero, then the text.
    Record& name(const std::string& text);
    /// What a list of these plug-ins holds; it says that it holds `number`.
    Record& plugIns(const std::vector<std::string>& modules, int number);
    /// What every object begins with: no name, no flags, and references to its attributes.
    Record& object(const std::vector<int>& attributes = {});

    const std::string& get() const { return data; }
    operator const std::string&() const { return data; }

private:
    Record& put(std::uint64_t value, int width, int alignment);

    bool swapped;
    std::string data;
};

class FileBuilder
{
public:
    struct Entry
    {
        std::string data;
        std::uint32_t magic = 0xBA773265;
        std::uint32_t tag = 0;
        std::uint32_t offset = 0; // where the data is put, unless it is set to something else
        std::uint32_t compression = 0;
        std::uint32_t size = 0;
        std::uint32_t version = 0x01020000;
        bool onSameBytes = false; // as those of the entry before it
    };

    explicit FileBuilder(bool otherOrder = false) : swapped(otherOrder) {}

    /// Appends an entry, and its tag when it is new; the entry may be changed before build().
    Entry& add(const std::string& className, const std::string& data);
    /// The same with the data packed.
    Entry& addPacked(const std::string& className, const std::string& data);
    /// So many more entries on the bytes of the last one.
    void addOnSameBytes(const std::string& className, int number);
    Record record() const { return Record(swapped); }
    std::string build() const;

    std::vector<std::string> tags;
    std::vector<Entry> entries;
    std::uint32_t version = 0x01020000;
    std::size_t gap = 88;         // bytes reserved behind the directory, for each entry
    std::int64_t numEntries = -1; // instead of the true number

private:
    bool swapped;
};

/// Classes and data.
using Entries = std::vector<std::pair<std::string, std::string>>;
/// The bytes of a file with these entries.
std::string buildFile(const Entries& entries);
} // namespace tbtest
