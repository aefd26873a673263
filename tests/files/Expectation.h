// What a test expects of a damaged file, as it stands in tests/data/hostile/expected.txt.
#pragma once

#include <string>
#include <vector>

namespace tbtest
{
struct Expectation
{
    /// What really comes of a file. Its messages are taken from whoever listens to them.
    static Expectation ofFile(const std::string& path);
    /// All that stand in a manifest, in its order.
    static std::vector<Expectation> readAll(const std::string& manifest);

    /// In the form of the manifest: the file's name, then indented lines, each a word and what it is.
    std::string toText() const;

    std::string file;
    /// "open" and an error, "read" and an error; "says" and a line that is printed; "text", the last error in words;
    /// "holds" and a line of the graph.
    std::vector<std::string> lines;
};
} // namespace tbtest
