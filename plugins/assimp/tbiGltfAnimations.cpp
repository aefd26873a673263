#include "tbiGltfAnimations.h"

#include <portable/tbKeyFrameAction.h>
#include <tamber/graph/tbTransform.h>

#include "tbiActionNotes.h"
#include "tbiExportScene.h"

#include <map>
#include <utility>

namespace
{
void append(std::vector<float>& floats, const tbVec3& value)
{
    floats.insert(floats.end(), {value[0], value[1], value[2]});
}

/// Rotations are the conjugates of the customary ones.
void append(std::vector<float>& floats, const tbQuat& value)
{
    floats.insert(floats.end(), {-value[0], -value[1], -value[2], value[3]});
}

// The channels and samplers of one animation while it is written.
class ChannelWriter
{
public:
    explicit ChannelWriter(tbiGltfBuffer& target) : buffer(target)
    {
        channels.beginArray();
        samplers.beginArray();
    }

    template <class Table>
    void add(int node, const char* path, const Table& table, int width)
    {
        if (table.getNumKeys() == 0)
            return;
        std::vector<float> times;
        std::vector<float> values;
        for (int i = 0; i < table.getNumKeys(); ++i)
        {
            times.push_back(table.getKeyTime(i));
            append(values, table.getKeyValue(i));
        }
        const bool steps = table.getInterpolation() == tbInterpolation::STEP;
        samplers.beginObject().key("input").integer(buffer.addFloats(times, 1, true));
        samplers.key("output").integer(buffer.addFloats(values, width, false));
        samplers.key("interpolation").string(steps ? "STEP" : "LINEAR").endObject();
        channels.beginObject().key("sampler").integer(numSamplers++).key("target").beginObject();
        channels.key("node").integer(node).key("path").string(path).endObject().endObject();
    }

    void write(tbiJson& json)
    {
        json.key("channels").value(channels.getText() + "]");
        json.key("samplers").value(samplers.getText() + "]");
    }

private:
    tbiGltfBuffer& buffer;
    tbiJson channels;
    tbiJson samplers;
    int numSamplers = 0;
};
} // namespace

tbiGltfAnimations::tbiGltfAnimations(const tbiExportScene& scene) : notes(scene.nodes.size())
{
    std::map<const tbGroup*, std::size_t> nodes; // the first of each
    for (std::size_t node = 0; node < scene.nodes.size(); ++node)
        nodes.try_emplace(scene.nodes[node].source, node);
    std::map<std::pair<std::string, int>, int> known; // by name and how often the node had the name before
    std::map<std::pair<std::size_t, std::string>, int> before;
    for (std::size_t holder = 0; holder < scene.nodes.size(); ++holder)
    {
        for (const tbKeyFrameAction* action : scene.nodes[holder].actions)
        {
            // What it moves may lie elsewhere.
            const tbTransform* target = action->getTarget();
            const auto moved = target && !action->hasParent(target) ? nodes.find(target) : nodes.end();
            const std::size_t node = moved == nodes.end() ? holder : moved->second;
            if ((tbiActionNotes::kindsOf(*action) & tbiActionNotes::ALL_KEYS) == 0)
                continue;
            const std::string name = action->getName() ? action->getName() : "";
            const auto [place, isNew] =
                known.try_emplace({name, before[{node, name}]++}, int(animations.size()));
            if (isNew)
                animations.push_back({name, {}});
            animations[std::size_t(place->second)].channels.push_back({int(node), action});
            tbiActionNotes::append(notes[node], place->second, *action);
        }
    }
}

void tbiGltfAnimations::writeList(tbiGltfBuffer& buffer, tbiJson& json) const
{
    if (animations.empty())
        return;
    json.key("animations").beginArray();
    for (const Animation& animation : animations)
    {
        ChannelWriter writer(buffer);
        for (const Channel& channel : animation.channels)
        {
            writer.add(channel.node, "translation", channel.action->getPositions(), 3);
            writer.add(channel.node, "rotation", channel.action->getRotations(), 4);
            writer.add(channel.node, "scale", channel.action->getScales(), 3);
        }
        json.beginObject();
        if (!animation.name.empty())
            json.key("name").string(animation.name);
        writer.write(json);
        json.endObject();
    }
    json.endArray();
}
