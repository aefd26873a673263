#pragma once

#include "Image.h"
#include "Record.h"

#include <string>

namespace native
{

// One file of a comparison, with what its entries are called.
class DiffSide
{
public:
    explicit DiffSide(Image& source) : image(source), hashes(source.getEntries().size()) {}

    Image& getImage() { return image; }
    std::uint32_t getNumEntries() const { return std::uint32_t(image.getNumEntries()); }
    std::string_view getClass(std::int32_t entry) const { return image.getTagName(entry); }
    /// False when the kernel does not read it either.
    bool read(std::int32_t entry, std::vector<unsigned char>& data);
    /// The name of an object, or its class when it has none.
    std::string labelOf(std::int32_t entry);
    /// The same for entries of the same class and name, as a rule for no others. Reads each entry once.
    std::uint64_t hashOf(std::int32_t entry);

private:
    std::string nameOf(std::int32_t entry);

    Image& image;
    Findings ignored{0};
    std::vector<std::uint64_t> hashes; // 0: not known yet
};

/// How a pair of entries was come to: through a reference of another pair.
struct DiffStep
{
    std::int32_t parent; // -1 where the walk began
    const char* field;
    std::int32_t index; // among several references of the field, -1 for a single one
    bool isChild;       // of a node
    std::int32_t a;
    std::int32_t b;
};

/// Where the last of `steps` led, as "/root/wheel[2].traits[0]". Long paths lose their middle.
std::string pathOf(const std::vector<DiffStep>& steps, std::int32_t step, DiffSide& a);
/// The name of a field, with an index unless that is -1.
std::string indexed(const char* field, std::int32_t index);

} // namespace native
