#pragma once

#include <string>
#include <string_view>
#include <vector>

struct aiMetadata;
struct aiMetadataEntry;
struct aiNode;

// A group of values that a file notes beside a node. What is not there or of another kind reads as nothing, so that
// nothing needs to be true of the file.
class tbiExtras
{
public:
    tbiExtras() = default;
    explicit tbiExtras(const aiMetadata* values) : metadata(values) {}
    /// What our own files note beside `node`.
    static tbiExtras ofNode(const aiNode& node);

    bool has(std::string_view key) const { return find(key) != nullptr; }
    tbiExtras group(std::string_view key) const;
    std::string text(std::string_view key) const;
    /// -1 when there is none.
    int integer(std::string_view key) const;
    std::vector<float> numbers(std::string_view key) const;
    /// The name that tbiGltfMarks::writeName() noted, byte by byte; empty when there is none.
    std::string name() const;

private:
    const aiMetadataEntry* find(std::string_view key) const;

    const aiMetadata* metadata = nullptr;
};
