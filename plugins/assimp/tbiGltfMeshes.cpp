#include "tbiGltfMeshes.h"

#include <portable/tbMesh.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiExportScene.h"
#include "tbiMeshData.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{
/// Indices of two bytes, whose largest value is no index.
constexpr int MAX_SHORT_VERTICES = 65535;

struct Range
{
    float least[3] = {};
    float most[3] = {};
};

/// Of the positions that are finite.
Range rangeOf(const unsigned char* data, std::size_t count, std::size_t stride)
{
    Range range;
    bool isFirst = true;
    for (std::size_t i = 0; i < count; ++i)
    {
        float position[3];
        std::memcpy(position, data + i * stride, sizeof position);
        if (!std::isfinite(position[0]) || !std::isfinite(position[1]) || !std::isfinite(position[2]))
            continue;
        for (int axis = 0; axis < 3; ++axis)
        {
            range.least[axis] = isFirst ? position[axis] : std::min(range.least[axis], position[axis]);
            range.most[axis] = isFirst ? position[axis] : std::max(range.most[axis], position[axis]);
        }
        isFirst = false;
    }
    return range;
}

void flip(unsigned char* where)
{
    float v;
    std::memcpy(&v, where, sizeof v);
    v = 1.0f - v;
    std::memcpy(where, &v, sizeof v);
}

/// Four bytes in the order red, green, blue, alpha, whatever that of the machine and of the array.
void orderColor(unsigned char* where, bool isRedHigh)
{
    std::uint32_t color;
    std::memcpy(&color, where, sizeof color);
    const auto byte = [color](int shift) { return static_cast<unsigned char>(color >> shift); };
    const unsigned char ordered[] = {byte(isRedHigh ? 16 : 0), byte(8), byte(isRedHigh ? 0 : 16), byte(24)};
    std::memcpy(where, ordered, sizeof ordered);
}

template <class Index>
std::vector<Index> narrow(const unsigned int* indices, int count)
{
    std::vector<Index> narrowed(static_cast<std::size_t>(count));
    std::transform(indices, indices + count, narrowed.begin(),
                   [](unsigned int index) { return Index(index); });
    return narrowed;
}
} // namespace

void tbiGltfMeshes::write(const tbiExportMesh& source, tbiJson& json)
{
    const tbMesh& mesh = *source.mesh;
    const bool hasNothing = tbiIsEmpty(mesh);
    const Attributes& attributes = hasNothing ? nothing() : attributesOf(*mesh.getVertexArray());
    json.beginObject();
    if (mesh.getName())
        json.key("name").string(mesh.getName());
    json.key("primitives").beginArray().beginObject().key("attributes").beginObject();
    json.key("POSITION").integer(attributes.position);
    if (attributes.normal >= 0)
        json.key("NORMAL").integer(attributes.normal);
    if (attributes.color >= 0)
        json.key("COLOR_0").integer(attributes.color);
    for (std::size_t set = 0; set < attributes.texCoords.size(); ++set)
        json.key("TEXCOORD_" + std::to_string(set)).integer(attributes.texCoords[set]);
    json.endObject();
    if (!hasNothing && mesh.getNumIndices() > 0)
        json.key("indices").integer(addIndices(mesh));
    constexpr int MODES[] = {0, 1, 4};
    json.key("mode").integer(hasNothing ? 4 : MODES[mesh.getPrimitive()]);
    json.key("material").integer(source.material);
    json.endObject().endArray().endObject();
}

const tbiGltfMeshes::Attributes& tbiGltfMeshes::attributesOf(const tbVertexArray& vertices)
{
    const auto place = written.find(&vertices);
    return place != written.end() ? place->second
                                  : written.emplace(&vertices, addVertices(vertices)).first->second;
}

const tbiGltfMeshes::Attributes& tbiGltfMeshes::nothing()
{
    const auto [place, isNew] = written.try_emplace(nullptr);
    if (!isNew)
        return place->second;
    constexpr float ZEROS[9] = {};
    const std::span<const float> range(ZEROS, 3);
    const int view = buffer.addView(ZEROS, sizeof ZEROS, 12, tbiGltfBuffer::TARGET_VERTICES);
    place->second.position =
        buffer.addAccessor(view, {0, tbiGltfBuffer::COMPONENT_FLOAT, "VEC3", 3, false, range, range});
    return place->second;
}

tbiGltfMeshes::Attributes tbiGltfMeshes::addVertices(const tbVertexArray& vertices)
{
    const auto count = std::size_t(vertices.getNum());
    const auto stride = std::size_t(vertices.getVertexSize());
    const auto* data = static_cast<const unsigned char*>(vertices.getData());
    const int sets = vertices.getNumTexCoordSets();
    const std::size_t firstSet = stride - std::size_t(sets) * 8;
    const int color = vertices.getOffset(tbVertexArray::VT_COLOR);
    std::vector<unsigned char> bytes(data, data + count * stride);
    for (std::size_t i = 0; i < count; ++i)
    {
        unsigned char* vertex = &bytes[i * stride];
        if (color >= 0)
            orderColor(vertex + color, vertices.getColorType() == tbVertexArray::COLOR_ARGB);
        for (int set = 0; set < sets; ++set)
            flip(vertex + firstSet + std::size_t(set) * 8 + 4);
    }
    const int view = buffer.addView(bytes.data(), bytes.size(), stride, tbiGltfBuffer::TARGET_VERTICES);
    const auto add = [&](std::size_t offset, const char* type) {
        return buffer.addAccessor(view, {offset, tbiGltfBuffer::COMPONENT_FLOAT, type, count, false, {}, {}});
    };

    Attributes attributes;
    const Range range = rangeOf(data, count, stride);
    attributes.position = buffer.addAccessor(
        view, {0, tbiGltfBuffer::COMPONENT_FLOAT, "VEC3", count, false, range.least, range.most});
    if (const int normal = vertices.getOffset(tbVertexArray::VT_NORMAL); normal >= 0)
        attributes.normal = add(std::size_t(normal), "VEC3");
    if (color >= 0)
        attributes.color = buffer.addAccessor(
            view, {std::size_t(color), tbiGltfBuffer::COMPONENT_BYTE, "VEC4", count, true, {}, {}});
    for (int set = 0; set < sets; ++set)
        attributes.texCoords.push_back(add(firstSet + std::size_t(set) * 8, "VEC2"));
    return attributes;
}

int tbiGltfMeshes::addIndices(const tbMesh& mesh)
{
    tbiCheckIndices(mesh);
    const unsigned int* indices = mesh.getIndices();
    const int count = mesh.getNumIndices();
    const int numVertices = mesh.getVertexArray()->getNum();
    const auto add = [&](const auto& values, tbiGltfBuffer::COMPONENT component)
    {
        const int view = buffer.addView(values.data(), values.size() * sizeof(values[0]), 0,
                                        tbiGltfBuffer::TARGET_INDICES);
        return buffer.addAccessor(view, {0, component, "SCALAR", values.size(), false, {}, {}});
    };
    if (numVertices <= MAX_SHORT_VERTICES)
        return add(narrow<std::uint16_t>(indices, count), tbiGltfBuffer::COMPONENT_SHORT);
    return add(narrow<std::uint32_t>(indices, count), tbiGltfBuffer::COMPONENT_INT);
}
