#include "tbiExtras.h"

#include "tbiGltfMarks.h"

#include <assimp/scene.h>

#include <cmath>
#include <limits>

namespace
{
template <class Value>
double valueOf(const aiMetadataEntry& entry)
{
    return double(*static_cast<const Value*>(entry.mData));
}

/// Not-a-number for what is none.
double numberOf(const aiMetadataEntry& entry)
{
    if (entry.mData)
        switch (entry.mType)
        {
        case AI_BOOL:
            return valueOf<bool>(entry);
        case AI_INT32:
            return valueOf<std::int32_t>(entry);
        case AI_UINT64:
            return valueOf<std::uint64_t>(entry);
        case AI_FLOAT:
            return valueOf<float>(entry);
        case AI_DOUBLE:
            return valueOf<double>(entry);
        default:
            break;
        }
    return std::numeric_limits<double>::quiet_NaN();
}

/// Every character becomes the byte that it stands for.
std::string latinOf(const std::string& utf8)
{
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i)
    {
        const auto first = static_cast<unsigned char>(utf8[i]);
        if (first >= 0xC2 && first <= 0xC3 && i + 1 < utf8.size())
            bytes += char((first & 3) << 6 | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
        else
            bytes += char(first);
    }
    return bytes;
}
} // namespace

tbiExtras tbiExtras::ofNode(const aiNode& node)
{
    return tbiExtras(node.mMetaData).group(tbiGltfMarks::ROOT);
}

const aiMetadataEntry* tbiExtras::find(std::string_view key) const
{
    for (unsigned i = 0; metadata && i < metadata->mNumProperties; ++i)
        if (key == std::string_view(metadata->mKeys[i].data, metadata->mKeys[i].length))
            return &metadata->mValues[i];
    return nullptr;
}

tbiExtras tbiExtras::group(std::string_view key) const
{
    const aiMetadataEntry* entry = find(key);
    return tbiExtras(entry && entry->mType == AI_AIMETADATA ? static_cast<const aiMetadata*>(entry->mData)
                                                            : nullptr);
}

std::string tbiExtras::text(std::string_view key) const
{
    const aiMetadataEntry* entry = find(key);
    if (!entry || entry->mType != AI_AISTRING || !entry->mData)
        return {};
    const auto* value = static_cast<const aiString*>(entry->mData);
    return std::string(value->data, value->length);
}

int tbiExtras::integer(std::string_view key) const
{
    const aiMetadataEntry* entry = find(key);
    const double value = entry ? numberOf(*entry) : -1.0;
    return value >= 0.0 && value <= double(std::numeric_limits<int>::max()) ? int(value) : -1;
}

std::vector<float> tbiExtras::numbers(std::string_view key) const
{
    const tbiExtras list = group(key);
    std::vector<float> values;
    for (unsigned i = 0; list.metadata && i < list.metadata->mNumProperties; ++i)
    {
        const double value = numberOf(list.metadata->mValues[i]);
        values.push_back(std::isfinite(value) ? float(value) : 0.0f);
    }
    return values;
}

std::string tbiExtras::name() const
{
    const std::string utf8 = text(tbiGltfMarks::NAME);
    return has(tbiGltfMarks::NAME_IS_LATIN) ? latinOf(utf8) : utf8;
}
