#pragma once

#include <string>
#include <string_view>
#include <vector>

// The modules that may be loaded, and the contents that their files must have: "a,b=HEX", where a and b are the names
// of modules in any case, with or without an ending, and HEX is the SHA-256 of the file. A name may come with several
// checksums, of which one must match.
class tbiPlugInAllowList
{
public:
    enum class Answer
    {
        NO,           // the name is not in the list
        YES,          // whatever the content
        IF_IT_MATCHES // a checksum is asked for
    };

    /// False when a piece is not understood. What it names stays forbidden.
    bool parse(std::string_view text);
    Answer ask(std::string_view moduleName) const;
    bool matches(std::string_view moduleName, std::string_view checksum) const;

private:
    struct Entry
    {
        std::string moduleName;
        std::string checksum; // in lower case; empty for any
    };

    bool parseEntry(std::string_view text);

    std::vector<Entry> entries;
};
