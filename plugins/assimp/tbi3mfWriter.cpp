#include "tbi3mfWriter.h"

#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiExportScene.h"
#include "tbiJson.h"
#include "tbiMeshData.h"
#include "tbiModelError.h"
#include "tbiZip.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

namespace
{
constexpr const char* CONTENT_TYPES =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
<Default Extension="model" ContentType="application/vnd.ms-package.3dmanufacturing-3dmodel+xml"/>
</Types>
)";
constexpr const char* RELATIONS =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Target="/3D/3dmodel.model" Id="rel0" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/>
</Relationships>
)";
constexpr const char* MODEL_START =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<model unit="millimeter" xml:lang="en-US" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02">
<resources>
)";
constexpr int MATERIALS_ID = 1;

class Writer
{
public:
    explicit Writer(const tbiExportScene& source) : scene(source), meshIds(source.meshes.size(), 0) {}

    std::string write()
    {
        text = MODEL_START;
        writeMaterials();
        for (std::size_t i = 0; i < scene.meshes.size(); ++i)
            writeMesh(i);
        const int top = writeNode(0);
        if (top == 0)
            throw tbiModelError("there are no triangles, and 3MF files hold nothing else");
        text += "</resources>\n<build>\n<item" + reference(top, tbiExportScene::placementOf(scene.nodes[0])) +
                "</build>\n</model>\n";
        return std::move(text);
    }

private:
    /// Text in an attribute; what XML cannot hold becomes '_'.
    static std::string escaped(const char* name)
    {
        std::string result;
        const std::string source = name ? name : "";
        const bool isUtf8 = tbiIsUtf8(source);
        for (const char c : source)
        {
            const auto byte = static_cast<unsigned char>(c);
            if (c == '&' || c == '<' || c == '"')
                result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&quot;";
            else
                result += byte < 0x20 || (byte >= 0x80 && !isUtf8) ? '_' : c;
        }
        return result;
    }

    void add(const char* before, float value, const char* after)
    {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, std::isfinite(value) ? value : 0.0f);
        text.append(before).append(digits, end.ptr).append(after);
    }

    static std::string reference(int id, const tbMatrix& matrix)
    {
        std::string result = " objectid=\"" + std::to_string(id) + "\"";
        if (!(matrix.getType() & tbMatrix::MATRIX_IDENT))
        {
            result += " transform=\"";
            for (int row = 0; row < 4; ++row)
                for (int column = 0; column < 3; ++column)
                {
                    char digits[32];
                    const auto end = std::to_chars(digits, digits + sizeof digits, matrix[row][column]);
                    result.append(row + column > 0 ? " " : "").append(digits, end.ptr);
                }
            result += '"';
        }
        return result + "/>\n";
    }

    void writeMaterials()
    {
        text += "<basematerials id=\"" + std::to_string(MATERIALS_ID) + "\">\n";
        for (const tbiExportMaterial& source : scene.materials)
        {
            const tbMaterial* material = source.material;
            const tbVec3 color = material ? material->getDiffuse() : tbVec3(1, 1, 1);
            const auto byte = [](float part) { return unsigned(tbiClampUnit(part) * 255.0f + 0.5f); };
            char hex[16];
            std::snprintf(hex, sizeof hex, "#%02X%02X%02X%02X", byte(color[0]), byte(color[1]),
                          byte(color[2]), byte(material ? material->getOpacity() : 1.0f));
            text += "<base name=\"" + escaped(material ? material->getName() : "") + "\" displaycolor=\"" +
                    hex + "\"/>\n";
        }
        text += "</basematerials>\n";
    }

    void writeMesh(std::size_t index)
    {
        const tbMesh& mesh = *scene.meshes[index].mesh;
        const std::vector<unsigned> corners = tbiCornersOf(mesh);
        if (mesh.getPrimitive() != tbMesh::TRIANGLES || corners.empty())
            return;
        meshIds[index] = ++lastId;
        beginObject(lastId, mesh.getName());
        text += " pid=\"" + std::to_string(MATERIALS_ID) + "\" pindex=\"" +
                std::to_string(scene.meshes[index].material) + "\">\n<mesh>\n<vertices>\n";
        for (int i = 0; i < mesh.getVertexArray()->getNum(); ++i)
        {
            const tbVec3 position = tbiVectorAt(*mesh.getVertexArray(), 0, unsigned(i));
            add("<vertex x=\"", position[0], "");
            add("\" y=\"", position[1], "");
            add("\" z=\"", position[2], "\"/>\n");
        }
        text += "</vertices>\n<triangles>\n";
        for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
            text += "<triangle v1=\"" + std::to_string(corners[i]) + "\" v2=\"" +
                    std::to_string(corners[i + 1]) + "\" v3=\"" + std::to_string(corners[i + 2]) + "\"/>\n";
        text += "</triangles>\n</mesh>\n</object>\n";
    }

    /// Objects stand before those that name them. Returns the id, 0 when there is nothing in the node.
    int writeNode(int index)
    {
        const tbiExportNode& node = scene.nodes[std::size_t(index)];
        std::string components;
        for (const int mesh : node.meshes)
            if (meshIds[std::size_t(mesh)] > 0)
                components += "<component" + reference(meshIds[std::size_t(mesh)], tbMatrix::identity());
        for (const int child : scene.childrenOf(index))
            if (const int id = writeNode(child); id > 0)
                components += "<component" +
                              reference(id, tbiExportScene::placementOf(scene.nodes[std::size_t(child)]));
        if (components.empty())
            return 0;
        const int id = ++lastId;
        beginObject(id, node.source ? node.source->getName() : nullptr);
        text += ">\n<components>\n" + components + "</components>\n</object>\n";
        return id;
    }

    void beginObject(int id, const char* name)
    {
        text += "<object id=\"" + std::to_string(id) + "\" type=\"model\" name=\"" + escaped(name) + "\"";
    }

    const tbiExportScene& scene;
    std::string text;
    std::vector<int> meshIds; // 0 for what is left out
    int lastId = MATERIALS_ID;
};
} // namespace

std::string tbiWrite3mf(const tbiExportScene& scene)
{
    tbiZip zip;
    zip.add("[Content_Types].xml", CONTENT_TYPES);
    zip.add("_rels/.rels", RELATIONS);
    zip.add("3D/3dmodel.model", Writer(scene).write());
    return zip.finish();
}
