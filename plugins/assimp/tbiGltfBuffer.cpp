#include "tbiGltfBuffer.h"

#include "tbiModelError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace
{
constexpr std::size_t ALIGNMENT = 4;
constexpr std::size_t LARGEST = std::numeric_limits<std::uint32_t>::max() - std::size_t(1) * 1024;
constexpr std::array<const char*, 5> TYPES{"", "SCALAR", "VEC2", "VEC3", "VEC4"};
} // namespace

tbiGltfBuffer::tbiGltfBuffer()
{
    views.beginArray();
    accessors.beginArray();
}

int tbiGltfBuffer::addView(const void* data, std::size_t size, std::size_t stride, TARGET target)
{
    const std::size_t offset = (bytes.size() + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
    if (size > LARGEST || offset > LARGEST - size)
        throw tbiModelError("the file would be larger than 4 GiB");
    bytes.resize(offset + size);
    if (size > 0)
        std::memcpy(&bytes[offset], data, size);
    views.beginObject().key("buffer").integer(0);
    views.key("byteOffset").integer((long long)offset).key("byteLength").integer((long long)size);
    if (stride > 0)
        views.key("byteStride").integer((long long)stride);
    if (target != TARGET_NONE)
        views.key("target").integer(target);
    views.endObject();
    return numViews++;
}

int tbiGltfBuffer::addAccessor(int view, const Elements& elements)
{
    accessors.beginObject().key("bufferView").integer(view);
    accessors.key("byteOffset").integer((long long)elements.offset);
    accessors.key("componentType").integer(elements.component).key("type").string(elements.type);
    accessors.key("count").integer((long long)elements.count);
    if (elements.isNormalized)
        accessors.key("normalized").boolean(true);
    if (!elements.min.empty())
    {
        accessors.key("min").numbers(elements.min.data(), int(elements.min.size()));
        accessors.key("max").numbers(elements.max.data(), int(elements.max.size()));
    }
    accessors.endObject();
    return numAccessors++;
}

int tbiGltfBuffer::addFloats(const std::vector<float>& values, int width, bool withRange)
{
    const int view = addView(values.data(), values.size() * sizeof(float), 0, TARGET_NONE);
    Elements elements{
        0, COMPONENT_FLOAT, TYPES[std::size_t(width)], values.size() / std::size_t(width), false, {}, {}};
    float range[2] = {};
    if (withRange && width == 1 && !values.empty())
    {
        const auto [least, most] = std::minmax_element(values.begin(), values.end());
        range[0] = *least;
        range[1] = *most;
        elements.min = {&range[0], 1};
        elements.max = {&range[1], 1};
    }
    return addAccessor(view, elements);
}

void tbiGltfBuffer::writeLists(tbiJson& json) const
{
    if (numViews > 0)
        json.key("bufferViews").value(views.getText() + "]");
    if (numAccessors > 0)
        json.key("accessors").value(accessors.getText() + "]");
}
