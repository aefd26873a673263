#include "tbiGltfMarks.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbTexture.h>

#include "tbiExportScene.h"
#include "tbiJson.h"
#include "tbiMeshData.h"

namespace
{
void writeSurface(tbiJson& json, const tbMaterial& material)
{
    json.key(tbiGltfMarks::SURFACE).beginObject();
    tbiGltfMarks::writeName(json, material.getName());
    json.key("values").beginArray();
    for (const tbVec3& color :
         {material.getAmbient(), material.getDiffuse(), material.getSpecular(), material.getEmissive()})
        json.number(color[0]).number(color[1]).number(color[2]);
    json.number(material.getShininess()).number(material.getOpacity()).endArray().endObject();
}

void writeTexture(tbiJson& json, const tbTexture& texture)
{
    json.key(tbiGltfMarks::TEXTURE).beginObject();
    tbiGltfMarks::writeName(json, texture.getName());
    json.key("values").integers({texture.getWrapS(), texture.getWrapT(), texture.getFilter(),
                                 texture.getWidth(), texture.getHeight()});
    if (texture.getFileName())
    {
        json.key(tbiGltfMarks::FILE_NAME).beginObject();
        tbiGltfMarks::writeName(json, texture.getFileName());
        json.endObject();
    }
    if (*texture.getFormat())
        json.key(tbiGltfMarks::FORMAT).string(texture.getFormat());
    json.endObject();
}
} // namespace

void tbiGltfMarks::writeName(tbiJson& json, const char* name)
{
    json.key(NAME).string(name ? name : "");
    if (name && !tbiIsUtf8(name))
        json.key(NAME_IS_LATIN).boolean(true);
}

void tbiGltfMarks::writeMesh(tbiJson& json, const tbMesh& mesh)
{
    writeName(json, mesh.getName());
    if (tbiIsEmpty(mesh))
        json.key(MESH_IS_EMPTY).boolean(true);
    else if (mesh.getNumIndices() == 0)
        json.key(MESH_IS_UNINDEXED).boolean(true);
}

void tbiGltfMarks::writeStyle(tbiJson& json, const tbiExportMaterial& material)
{
    if (material.material)
        writeSurface(json, *material.material);
    if (material.texture)
        writeTexture(json, *material.texture);
    if (const tbBlend* blend = material.blend)
        json.key(BLEND).integers(
            {blend->isEnabled(), blend->getSourceFactor(), blend->getDestinationFactor()});
    if (material.cull)
        json.key(CULL).integers({material.cull->getFace()});
}
