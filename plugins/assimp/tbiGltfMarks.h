#pragma once

#include <string_view>

class tbiJson;
class tbMesh;
struct tbiExportMaterial;

// What a glTF file cannot say, our own files note beside their nodes, under "tamber" in the "extras", so that reading
// them gives back what was written. Other programs pass it over.
namespace tbiGltfMarks
{
/// What our files name as their maker begins so.
constexpr std::string_view GENERATOR = "Tamber";
constexpr const char* ROOT = "tamber";

constexpr const char* NAME = "name";             // of the node, where that of the file is another
constexpr const char* NAME_IS_LATIN = "isLatin"; // beside a name: its characters stand for bytes
constexpr const char* PART = "part";             // the node's mesh belongs to the parent node
constexpr const char* TURN = "turn";             // the node only turns the scene
constexpr const char* MATRIX = "matrix";         // the node's, exactly
constexpr const char* MATERIAL = "material";     // number of the mesh's material
constexpr const char* STYLE = "style";           // the traits of that material, where it first comes
constexpr const char* MESH = "mesh";             // of the mesh, where it first comes
constexpr const char* ACTIONS = "actions";       // of those that move the node, see tbiActionNotes

constexpr const char* MESH_IS_UNINDEXED = "unindexed";
constexpr const char* MESH_IS_EMPTY = "empty";

constexpr const char* SURFACE = "surface"; // ambient, diffuse, specular, emissive, shininess, opacity
constexpr const char* TEXTURE = "texture"; // wrapS, wrapT, filter, width, height
constexpr const char* FILE_NAME = "file";  // of the texture
constexpr const char* FORMAT = "format";   // of the image that the texture carries
constexpr const char* BLEND = "blend";     // enabled, source, destination
constexpr const char* CULL = "cull";       // face

/// Adds a name to the object that is open.
void writeName(tbiJson& json, const char* name);
/// Adds what is to say of a mesh to the object that is open.
void writeMesh(tbiJson& json, const tbMesh& mesh);
/// Adds the traits of a material to the object that is open.
void writeStyle(tbiJson& json, const tbiExportMaterial& material);
} // namespace tbiGltfMarks
