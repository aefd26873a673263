#include "tbiGltfWriter.h"

#include <portable/tbKeyFrameAction.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>

#include "tbiExportScene.h"
#include "tbiGltfAnimations.h"
#include "tbiGltfBuffer.h"
#include "tbiGltfMarks.h"
#include "tbiGltfMaterials.h"
#include "tbiGltfMeshes.h"
#include "tbiJson.h"
#include "tbiModelError.h"
#include "tbiPlacement.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>

namespace
{
constexpr const char* TURN_NAME = "Z-up to Y-up";

class Writer
{
public:
    explicit Writer(const tbiExportScene& source)
        : scene(source),
          animations(source),
          meshes(buffer),
          materials(buffer),
          isMeshNoted(source.meshes.size()),
          isMaterialNoted(source.materials.size())
    {
        for (const tbiExportNode& node : scene.nodes)
            ++names[nameOf(node)];
    }

    /// Everything but the buffer itself; the object stays open for it.
    tbiJson write()
    {
        tbiJson json;
        json.beginObject();
        json.key("asset").beginObject().key("version").string("2.0");
        json.key("generator").string(tbiGltfMarks::GENERATOR).endObject();
        json.key("scene").integer(0).key("scenes").beginArray().beginObject();
        if (!scene.name.empty())
            json.key("name").string(scene.name);
        json.key("nodes").integers({0}).endObject().endArray();
        writeNodes(json);
        writeMeshes(json);
        materials.writeLists(json);
        animations.writeList(buffer, json);
        buffer.writeLists(json);
        return json;
    }

    const std::vector<unsigned char>& getBytes() const { return buffer.getBytes(); }

private:
    static std::string nameOf(const tbiExportNode& node)
    {
        if (!node.source)
            return TURN_NAME;
        return node.source->getName() ? node.source->getName() : "";
    }

    /// Animations find their nodes by name, so that these are made unique.
    std::string fileNameOf(int index) const
    {
        const std::string name = nameOf(scene.nodes[std::size_t(index)]);
        const bool isMoved = !animations.notesOf(index).empty();
        const bool isUnclear = isMoved && (name.empty() || names.at(name) > 1);
        if (!isUnclear)
            return name;
        std::string unique = name + "#" + std::to_string(index);
        while (names.contains(unique))
            unique += '#';
        return unique;
    }

    void writeNodes(tbiJson& json)
    {
        json.key("nodes").beginArray();
        int numParts = 0;
        std::string parts; // further meshes of nodes: nodes of their own behind all others
        for (int i = 0; i < int(scene.nodes.size()); ++i)
        {
            const std::vector<int>& own = scene.nodes[std::size_t(i)].meshes;
            std::vector<int> children;
            for (std::size_t part = 1; part < own.size(); ++part)
                children.push_back(int(scene.nodes.size()) + numParts++);
            writeNode(json, i, children);
            for (std::size_t part = 1; part < own.size(); ++part)
                parts += "," + partOf(own[part]);
        }
        if (!parts.empty())
            json.value(std::string_view(parts).substr(1));
        json.endArray();
    }

    void writeNode(tbiJson& json, int index, std::vector<int>& children)
    {
        const tbiExportNode& node = scene.nodes[std::size_t(index)];
        const std::vector<int> below = scene.childrenOf(index);
        children.insert(children.end(), below.begin(), below.end());
        const tbMatrix matrix = tbiExportScene::placementOf(node);
        const std::string fileName = fileNameOf(index);
        const bool isMoved = !animations.notesOf(index).empty();
        json.beginObject();
        if (!fileName.empty())
            json.key("name").string(fileName);
        writePlacement(json, matrix, isMoved);
        if (!node.meshes.empty())
            json.key("mesh").integer(node.meshes.front());
        if (!children.empty())
            json.key("children").integers(children);

        tbiJson marks;
        const std::string name = nameOf(node);
        if (node.source && (name.empty() || name != fileName || !tbiIsUtf8(name)))
            tbiGltfMarks::writeName(marks, name.c_str());
        if (!node.source)
            marks.key(tbiGltfMarks::TURN).boolean(true);
        if (isMoved)
        {
            marks.key(tbiGltfMarks::MATRIX).numbers(matrix.getData(), 16);
            const std::vector<float>& notes = animations.notesOf(index);
            marks.key(tbiGltfMarks::ACTIONS).numbers(notes.data(), int(notes.size()));
        }
        if (!node.meshes.empty())
            noteMesh(marks, node.meshes.front());
        writeMarks(json, marks);
        json.endObject();
    }

    static void writePlacement(tbiJson& json, const tbMatrix& matrix, bool isMoved)
    {
        if (isMoved) // the format wants no matrix there; the exact one is noted
        {
            tbiPlacement placement(matrix);
            const tbQuat& turn = placement.rotation;
            const float rotation[] = {-turn[0], -turn[1], -turn[2], turn[3]};
            json.key("translation").numbers(&placement.translation[0], 3);
            json.key("rotation").numbers(rotation, 4);
            json.key("scale").numbers(&placement.scale[0], 3);
        }
        else if (!(matrix.getType() & tbMatrix::MATRIX_IDENT))
            json.key("matrix").numbers(matrix.getData(), 16); // columns there are rows here
    }

    std::string partOf(int mesh)
    {
        tbiJson json;
        json.beginObject().key("mesh").integer(mesh);
        tbiJson marks;
        marks.key(tbiGltfMarks::PART).boolean(true);
        noteMesh(marks, mesh);
        writeMarks(json, marks);
        return json.endObject().getText();
    }

    void noteMesh(tbiJson& marks, int index)
    {
        const tbiExportMesh& mesh = scene.meshes[std::size_t(index)];
        if (isMeshNoted[std::size_t(index)])
            return;
        isMeshNoted[std::size_t(index)] = true;
        marks.key(tbiGltfMarks::MESH).beginObject();
        tbiGltfMarks::writeMesh(marks, *mesh.mesh);
        marks.endObject().key(tbiGltfMarks::MATERIAL).integer(mesh.material);
        if (isMaterialNoted[std::size_t(mesh.material)])
            return;
        isMaterialNoted[std::size_t(mesh.material)] = true;
        marks.key(tbiGltfMarks::STYLE).beginObject();
        tbiGltfMarks::writeStyle(marks, scene.materials[std::size_t(mesh.material)]);
        marks.endObject();
    }

    static void writeMarks(tbiJson& json, const tbiJson& marks)
    {
        if (!marks.getText().empty())
            json.key("extras")
                .beginObject()
                .key(tbiGltfMarks::ROOT)
                .value("{" + marks.getText() + "}")
                .endObject();
    }

    void writeMeshes(tbiJson& json)
    {
        if (scene.meshes.empty())
            return;
        json.key("meshes").beginArray();
        for (const tbiExportMesh& mesh : scene.meshes)
            meshes.write(mesh, json);
        json.endArray().key("materials").beginArray();
        for (const tbiExportMaterial& material : scene.materials)
            materials.write(material, json);
        json.endArray();
    }

    const tbiExportScene& scene;
    tbiGltfBuffer buffer;
    tbiGltfAnimations animations;
    tbiGltfMeshes meshes;
    tbiGltfMaterials materials;
    std::unordered_map<std::string, int> names; // how many nodes have them
    std::vector<bool> isMeshNoted;
    std::vector<bool> isMaterialNoted;
};

void append32(std::string& bytes, std::size_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += char(value >> shift & 0xFF);
}

void appendChunk(std::string& file, const char* kind, const char* data, std::size_t size, char filler)
{
    const std::size_t padded = (size + 3) / 4 * 4;
    append32(file, padded);
    file.append(kind, 4).append(data, size).append(padded - size, filler);
}

std::string base64(const std::vector<unsigned char>& bytes)
{
    constexpr const char* DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        const std::size_t left = bytes.size() - i;
        const std::uint32_t group = std::uint32_t(bytes[i]) << 16 |
                                    (left > 1 ? std::uint32_t(bytes[i + 1]) << 8 : 0u) |
                                    (left > 2 ? std::uint32_t(bytes[i + 2]) : 0u);
        text += DIGITS[group >> 18];
        text += DIGITS[group >> 12 & 63];
        text += left > 1 ? DIGITS[group >> 6 & 63] : '=';
        text += left > 2 ? DIGITS[group & 63] : '=';
    }
    return text;
}
} // namespace

std::string tbiWriteGlb(const tbiExportScene& scene)
{
    Writer writer(scene);
    tbiJson json = writer.write();
    const std::vector<unsigned char>& bytes = writer.getBytes();
    if (!bytes.empty())
        json.key("buffers")
            .beginArray()
            .beginObject()
            .key("byteLength")
            .integer((long long)bytes.size())
            .endObject()
            .endArray();
    const std::string& text = json.endObject().getText();
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - std::size_t(64) - bytes.size())
        throw tbiModelError("the file would be larger than 4 GiB");
    std::string file = "glTF";
    append32(file, 2);
    append32(file, 0);
    appendChunk(file, "JSON", text.data(), text.size(), ' ');
    if (!bytes.empty())
        appendChunk(file, "BIN\0", reinterpret_cast<const char*>(bytes.data()), bytes.size(), '\0');
    std::string length;
    append32(length, file.size());
    return file.replace(8, 4, length);
}

std::string tbiWriteGltf(const tbiExportScene& scene)
{
    Writer writer(scene);
    tbiJson json = writer.write();
    const std::vector<unsigned char>& bytes = writer.getBytes();
    if (!bytes.empty())
    {
        json.key("buffers").beginArray().beginObject().key("byteLength").integer((long long)bytes.size());
        json.key("uri")
            .string("data:application/octet-stream;base64," + base64(bytes))
            .endObject()
            .endArray();
    }
    return json.endObject().getText();
}
