#pragma once

#include "tbiGltfBuffer.h"

#include <string>
#include <vector>

class tbKeyFrameAction;
struct tbiExportScene;

// The key-frame actions of a scene as the animations of a glTF file. Actions of one name belong together; the second
// of one name at one node begins another animation.
class tbiGltfAnimations
{
public:
    explicit tbiGltfAnimations(const tbiExportScene& scene);

    /// The notes of the actions that move a node and have keys, see tbiActionNotes.
    const std::vector<float>& notesOf(int node) const { return notes[std::size_t(node)]; }
    /// Adds the list to the object that is open in `json`, where there is any animation.
    void writeList(tbiGltfBuffer& buffer, tbiJson& json) const;

private:
    struct Channel
    {
        int node;
        const tbKeyFrameAction* action;
    };
    struct Animation
    {
        std::string name;
        std::vector<Channel> channels;
    };

    std::vector<Animation> animations;
    std::vector<std::vector<float>> notes; // by node
};
