#include "tbiAssimpAnimation.h"

#include <portable/tbKeyFrameAction.h>
#include <tamber/graph/tbTransform.h>

#include "tbiActionNotes.h"

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

tbRef<tbKeyFrameAction> convertChannel(const aiNodeAnim& channel, double secondsPerTick, const float* note)
{
    const unsigned kinds = tbiActionNotes::kindsOf(note);
    tbRef<tbKeyFrameAction> action = new tbKeyFrameAction;
    if (kinds & tbiActionNotes::POSITIONS)
        addKeys(action->getPositions(), channel.mPositionKeys, channel.mNumPositionKeys, secondsPerTick);
    if (kinds & tbiActionNotes::ROTATIONS)
        addKeys(action->getRotations(), channel.mRotationKeys, channel.mNumRotationKeys, secondsPerTick);
    if (kinds & tbiActionNotes::SCALES)
        addKeys(action->getScales(), channel.mScalingKeys, channel.mNumScalingKeys, secondsPerTick);
    tbiActionNotes::take(*action, note);
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
            const float* note = tbiActionNotes::find(node->second.notes, i);
            const auto action = convertChannel(*animation.mChannels[j], 1.0 / ticks, note);
            const bool isNamed = animation.mName.length > 0;
            if (isNamed && !(tbiActionNotes::kindsOf(note) & tbiActionNotes::UNNAMED))
                action->setName(animation.mName.C_Str());
            node->second.transform->addChild(action.get());
        }
    }
}
