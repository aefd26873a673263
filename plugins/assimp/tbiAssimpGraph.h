#pragma once

#include <memory>
#include <string_view>

struct aiScene;
class tbModel;

// Owns an object that has no reference yet, until release() hands it on.
struct tbiUnRef
{
    void operator()(tbModel* model) const;
};
using tbiNewModel = std::unique_ptr<tbModel, tbiUnRef>;

/// True for glTF files of our own. They hold final meshes, and notes as tbiGltfMarks has them.
bool tbiIsOwnFile(const aiScene& scene);

/// The graph that `scene` stands for: a model, below it one transform that turns the scene when its Y is up, and
/// below that a transform for each node. Each mesh becomes a style with a geometry that stays shared by all nodes
/// that use it. `extension` is that of the file. Throws tbiModelError.
tbiNewModel tbiConvertScene(const aiScene& scene, std::string_view extension);
