#include <tests/files/Expectation.h>

#include <tests/files/Listing.h>
#include <tests/files/WholeFile.h>

#include <tests/support/Messages.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace tbtest
{
namespace
{
const char* nameOf(tbFile::FILE_ERROR error)
{
    constexpr const char* names[] = {"FILE_OK",         "FILE_CANNOT_OPEN",  "FILE_NOT_OPEN",
                                     "FILE_READ_ERROR", "FILE_NOT_WRITABLE", "FILE_EMPTY",
                                     "FILE_BAD_FORMAT", "FILE_NO_DATA",      "FILE_WRITE_ERROR"};
    return error >= 0 && error < int(std::size(names)) ? names[error] : "none of the errors";
}

} // namespace

Expectation Expectation::ofFile(const std::string& path)
{
    Expectation result;
    result.file = std::filesystem::path(path).filename().string();
    takeMessages();
    const WholeFile file(path);
    result.lines.push_back(std::string(file.opened ? "read " : "open ") + nameOf(file.error));
    std::string last;
    for (const std::string& line : takeMessages())
        result.lines.push_back("says " + (last = withoutPath(line, path)));
    if (file.text != last)
        result.lines.push_back("text " + file.text);
    std::istringstream graph(file.opened ? listShortly(file.objects) : std::string());
    for (std::string line; std::getline(graph, line);)
        result.lines.push_back("holds " + line);
    return result;
}

std::vector<Expectation> Expectation::readAll(const std::string& manifest)
{
    std::vector<Expectation> all;
    std::ifstream in(manifest);
    for (std::string line; std::getline(in, line);)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == '#')
            continue;
        if (line.compare(0, 4, "    ") != 0)
            all.emplace_back().file = line;
        else if (!all.empty())
            all.back().lines.push_back(line.substr(4));
    }
    return all;
}

std::string Expectation::toText() const
{
    std::string text = file + "\n";
    for (const std::string& line : lines)
        text += "    " + line + "\n";
    return text;
}
} // namespace tbtest
