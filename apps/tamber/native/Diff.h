// What differs between two native files as those who read them see it: object by object, field by field.
#pragma once

#include "Image.h"

#include <string>
#include <vector>

namespace native
{

struct DiffOptions
{
    /// Numbers a and b with |a - b| <= tolerance * max(1, |a|, |b|) are the same.
    double tolerance = 0.0;
    /// How many differences are kept; all are counted.
    std::size_t limit = 50;
};

struct Difference
{
    enum Kind : unsigned char
    {
        VALUE,      // values of a field
        COUNT,      // how many there are
        CLASS,      // of an object
        MISSING,    // on one side only
        SHARING,    // what is one object on one side is several on the other
        UNREADABLE, // cannot be compared
        MORE        // of one field more values differ than are listed
    };
    Kind kind{};
    std::string path;  // of the object, such as "/root/wheel[2]"
    std::string field; // such as "vertices[17].position"; may be empty
    std::string a;
    std::string b;
};

const char* nameOf(Difference::Kind kind);

struct DiffResult
{
    std::uint64_t count = 0;
    std::vector<Difference> listed;
    std::vector<std::string> notes; // differences that do not count
};

/// Walks both files from their first entries in step, then what is not reached from there. Byte order, packing,
/// versions, and the places and the order of entries are no differences. Stack and memory do not grow with the depth.
/// Both images must have entries. Throws SourceError when a file cannot be read.
DiffResult diffImages(Image& a, Image& b, const DiffOptions& options);

} // namespace native
