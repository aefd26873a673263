#pragma once

#include "Image.h"

#include <string>
#include <vector>

// What is known of a native file from its tables and its list of plug-ins; no other entry is read.
namespace native
{

struct TagInfo
{
    std::string name; // printable
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;  // of unpacked data
    std::uint64_t packed = 0; // entries
};

struct PlugInInfo
{
    std::string module; // texts are printable
    std::string name;
    std::string company;
    std::string date;
    int release[3] = {};
};

struct FileInfo
{
    std::uint64_t length = 0;
    ByteOrder order = OWN_ORDER;
    std::uint32_t version = 0;
    std::uint64_t numEntries = 0;
    std::uint64_t swappedEntries = 0; // in the other order than the file
    std::uint64_t bytes = 0;          // of all unpacked data
    std::vector<TagInfo> tags;        // in the order of the file
    std::vector<PlugInInfo> plugIns;
};

/// `image` has a header. What is wrong with the list of plug-ins is found as well.
FileInfo collectInfo(Image& image, Findings& findings);

/// "1.2.0"
std::string versionText(std::uint32_t version);

} // namespace native
