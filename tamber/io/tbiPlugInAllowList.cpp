#include <tamber/io/tbiPlugInAllowList.h>

#include <tamber/io/tbiSha256.h>
#include <tamber/platform/tbiModuleName.h>

#include <algorithm>

namespace
{

constexpr const char* UNMATCHED = "?"; // what no file's checksum is

std::string_view trimmed(std::string_view text)
{
    constexpr const char* SPACES = " \t\r\n";
    const std::size_t begin = std::min(text.find_first_not_of(SPACES), text.size());
    text.remove_prefix(begin);
    return text.substr(0, text.find_last_not_of(SPACES) + 1);
}

// The module name of "tbFoo", "tbfoo.dll" and "tbFoo.so" alike.
std::string completeModuleName(std::string_view name)
{
    std::string moduleName = tbiModuleName(name);
    return moduleName.ends_with(".DLL") ? moduleName : moduleName + ".DLL";
}

bool isChecksum(std::string_view text)
{
    return text.size() == tbiSha256::HEX_LENGTH &&
           text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string inLowerCase(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    return lower;
}

} // namespace

bool tbiPlugInAllowList::parse(std::string_view text)
{
    bool understood = true;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find(','), text.size());
        const std::string_view piece = trimmed(text.substr(0, end));
        understood = (piece.empty() || parseEntry(piece)) && understood;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return understood;
}

bool tbiPlugInAllowList::parseEntry(std::string_view text)
{
    const std::size_t equals = std::min(text.find('='), text.size());
    const std::string_view name = trimmed(text.substr(0, equals));
    Entry entry{completeModuleName(name), {}};
    const bool isName =
        name.find_first_of("/\\") == std::string_view::npos && tbiIsPlugInName(entry.moduleName);
    bool understood = isName;
    if (equals < text.size())
    {
        const std::string_view checksum = trimmed(text.substr(equals + 1));
        understood = understood && isChecksum(checksum);
        entry.checksum = isChecksum(checksum) ? inLowerCase(checksum) : UNMATCHED;
    }
    if (isName)
        entries.push_back(std::move(entry));
    return understood;
}

tbiPlugInAllowList::Answer tbiPlugInAllowList::ask(std::string_view moduleName) const
{
    Answer answer = Answer::NO;
    for (const Entry& entry : entries)
    {
        if (entry.moduleName != moduleName)
            continue;
        if (!entry.checksum.empty())
            return Answer::IF_IT_MATCHES;
        answer = Answer::YES;
    }
    return answer;
}

bool tbiPlugInAllowList::matches(std::string_view moduleName, std::string_view checksum) const
{
    return std::any_of(entries.begin(), entries.end(),
                       [&](const Entry& entry)
                       { return entry.moduleName == moduleName && entry.checksum == checksum; });
}
