#pragma once

#include <cstdint>
#include <string>

// A ZIP archive in memory whose files are stored as they are.
class tbiZip
{
public:
    /// Throws tbiModelError beyond 4 GiB.
    void add(const std::string& name, const std::string& bytes);
    /// The archive with its directory.
    std::string finish() const;

private:
    std::string files;
    std::string directory;
    std::uint16_t number = 0;
};
