#include "tbiAssimpAnimation.h"

#include <portable/tbKeyFrameAction.h>
#include <tamber/graph/tbTransform.h>

#include "tbiGltfAnimations.h"

#include <assimp/anim.h>
#include <assimp/scene.h>

namespace
{
constexpr double USUAL_TICKS_PER_SECOND = 25.0;

tbVec3 convert(const aiVector3D& v)
{
    return tbVec3(v.x, v.y, v.z);
}

/// Rotations are the conjugates of the source's.
tbQuat convert(const aiQuaternion& q)
{
    return tbQuat(-q.x, -q.y, -q.z, q.w);
}

template <class Table, class Key>
void addKeys(Table& table, const Key* keys, unsigned count, double secondsPerTick)
{
    for (unsigned i = 0; keys && i < count; ++i)
        table.addKey(float(keys[i].mTime * secondsPerTick), convert(keys[i].mValue));
}

constexpr unsigned ALL_KINDS =
    tbiGltfAnimations::POSITIONS | tbiGltfAnimations::ROTATIONS | tbiGltfAnimations::SCALES;

/// The kinds of keys to take of an animation.
unsigned kindsOf(const tbiMovedNode& node, unsigned animation)
{
    for (std::size_t i = 0; i + 1 < node.notes.size(); i += 2)
        if (node.notes[i] == float(animation) && node.notes[i + 1] >= 0.0f && node.notes[i + 1] < 16.0f)
            return unsigned(node.notes[i + 1]);
    return ALL_KINDS;
}

tbRef<tbKeyFrameAction> convertChannel(const aiNodeAnim& channel, double secondsPerTick, unsigned kinds)
{
    tbRef<tbKeyFrameAction> action = new tbKeyFrameAction;
    if (kinds & tbiGltfAnimations::POSITIONS)
        addKeys(action->getPositions(), channel.mPositionKeys, channel.mNumPositionKeys, secondsPerTick);
    if (kinds & tbiGltfAnimations::ROTATIONS)
        addKeys(action->getRotations(), channel.mRotationKeys, channel.mNumRotationKeys, secondsPerTick);
    if (kinds & tbiGltfAnimations::SCALES)
        addKeys(action->getScales(), channel.mScalingKeys, channel.mNumScalingKeys, secondsPerTick);
    action->setExtrapolation(tbExtrapolation::LOOP);
    action->pause(true);
    return action;
}
} // namespace

void tbiAddAnimations(const aiScene& scene, const tbiNodesByName& nodes)
{
    for (unsigned i = 0; i < scene.mNumAnimations; ++i)
    {
        const aiAnimation& animation = *scene.mAnimations[i];
        const double ticks =
            animation.mTicksPerSecond > 0.0 ? animation.mTicksPerSecond : USUAL_TICKS_PER_SECOND;
        for (unsigned j = 0; j < animation.mNumChannels; ++j)
        {
            const auto node = nodes.find(animation.mChannels[j]->mNodeName.C_Str());
            if (node == nodes.end())
                continue;
            const unsigned kinds = kindsOf(node->second, i);
            const auto action = convertChannel(*animation.mChannels[j], 1.0 / ticks, kinds);
            if (animation.mName.length > 0 && !(kinds & tbiGltfAnimations::UNNAMED))
                action->setName(animation.mName.C_Str());
            node->second.transform->addChild(action.get());
        }
    }
}
