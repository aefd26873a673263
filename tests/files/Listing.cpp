#include <tests/files/Listing.h>

#include <tests/support/FileNode.h>

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbPathAction.h>
#include <portable/tbTexture.h>
#include <tamber/tbKernel.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <unordered_map>

namespace tbtest
{
namespace
{
std::uint32_t checksum(const unsigned char* bytes, std::size_t size)
{
    std::uint32_t sum = 2166136261u;
    for (std::size_t i = 0; i < size; ++i)
        sum = (sum ^ bytes[i]) * 16777619u;
    return sum;
}

// One object's line, and the objects that it leads to.
class Line
{
public:
    Line(std::unordered_map<const tbBase*, int>& numbers, std::vector<const tbBase*>& found)
        : numberOf(numbers),
          objects(found)
    {
    }

    Line& word(const char* name)
    {
        text += std::string(" ") + name;
        return *this;
    }
    Line& string(const char* value)
    {
        text += ' ';
        if (!value)
        {
            text += '-';
            return *this;
        }
        text += '"';
        for (; *value != 0; ++value)
            add(*value >= 0x20 && *value < 0x7F ? "%c" : "\\x%02X", int(static_cast<unsigned char>(*value)));
        text += '"';
        return *this;
    }
    Line& integer(long long value) { return add(" %lld", value); }
    Line& hex(unsigned value) { return add(" %#x", value); }
    // NaNs differ in their sign from machine to machine.
    Line& real(double value) { return value != value ? word("nan") : add(" %.9g", value); }
    template <class... Values>
    Line& reals(Values... values)
    {
        (real(double(values)), ...);
        return *this;
    }
    Line& vector(const tbVec3& v) { return reals(v[0], v[1], v[2]); }
    Line& object(const tbBase* object)
    {
        if (!object)
            return word("-");
        const auto [place, isNew] = numberOf.try_emplace(object, int(objects.size()));
        if (isNew)
            objects.push_back(object);
        return add(" #%d", place->second);
    }
    Line& bytes(const void* data, std::size_t size)
    {
        constexpr std::size_t MOST = 256;
        text += ' ';
        const auto* all = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < std::min(size, MOST); ++i)
            add("%02x", int(all[i]));
        return size > MOST ? add("... %zu bytes, sum %08x", size, unsigned(checksum(all, size))) : *this;
    }

    std::string text;

private:
    template <class... Values>
    Line& add(const char* form, Values... values)
    {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, form, values...);
        text += buffer;
        return *this;
    }

    std::unordered_map<const tbBase*, int>& numberOf;
    std::vector<const tbBase*>& objects;
};

template <class Table>
void listTable(Line& line, const char* name, const Table& table, int numFloats)
{
    line.word(name).integer(int(table.getInterpolation())).integer(int(table.getExtrapolation()));
    for (int i = 0; i < table.getNumKeys(); ++i)
    {
        line.real(table.getKeyTime(i));
        for (int k = 0; k < numFloats; ++k)
            line.real(table.getKeyValue(i)[k]);
    }
}

template <class Objects>
void listObjects(Line& line, const Objects& objects)
{
    for (const auto& object : objects)
        line.object(&*object);
}

using Lister = std::function<void(Line&, const tbBase*)>;

/// Lists what a class adds to its parent.
template <class Class, class List>
Lister fieldsOf(List list)
{
    return [list](Line& line, const tbBase* object)
    {
        if (object->isOfType(Class::getClassType()))
            list(line, static_cast<const Class&>(*object));
    };
}

// Parents before children, as the records are laid out.
const Lister kernelListers[] = {
    fieldsOf<tbBase>(
        [](Line& line, auto& base)
        {
            line.string(base.getName()).integer(base.isDynamic());
            if (base.getAttribList() && base.getAttribList()->getNum() > 0)
                listObjects(line.word("attributes"), *base.getAttribList());
        }),
    fieldsOf<tbGroup>(
        [](Line& line, auto& group)
        {
            line.word("flags").hex(group.getTravFlags()).integer(group.getNodeFlags());
            if (group.getNumChildren() > 0)
                listObjects(line.word("children"), group.getChildren());
        }),
    fieldsOf<tbTransform>(
        [](Line& line, auto& transform)
        {
            line.word("matrix").hex(transform.getMatrix()->getType());
            for (int i = 0; i < 16; ++i)
                line.real((*transform.getMatrix())[i / 4][i % 4]);
        }),
    fieldsOf<tbModel>(
        [](Line& line, auto& model)
        { line.string(model.getFileName()).integer(model.isEnabled()).hex(model.getColliderMask()); }),
    fieldsOf<tbStyle>(
        [](Line& line, auto& style)
        {
            line.word("traits");
            for (int i = 0; i < style.getNumVisualTraits(); ++i)
                line.object(style.getVisualTrait(i));
            for (int i = 0; i < style.getNumAudioTraits(); ++i)
                line.object(style.getAudioTrait(i));
            for (int i = 0; i < style.getNumTravTraits(); ++i)
                line.object(style.getTravTrait(i));
        }),
    fieldsOf<tbSwitch>(
        [](Line& line, auto& node)
        {
            line.word("states");
            for (int i = 0; i < node.getNumChildren(); ++i)
                line.integer(node.isActive(i));
            line.integer(node.isTransitionEnabled()).integer(node.isInTransition());
            line.reals(node.getTransitionFraction(), node.getTransitionTime());
        }),
    fieldsOf<tbRangeSwitch>(
        [](Line& line, auto& node)
        {
            line.word("ranges");
            for (int i = 0; i < node.getNumChildren(); ++i)
                line.reals(node.getRange(i), node.getTransition(i));
            line.integer(node.isCenterFixed()).vector(*node.getCenter()).integer(node.isTransitionEnabled());
        }),
    fieldsOf<tbAutoSwitch>(
        [](Line& line, auto& node)
        {
            line.word("iterator").integer(node.isEnabled()).integer(node.isPaused());
            line.integer(node.getMode()).integer(node.getDirection()).integer(node.getCycle());
            line.real(node.getTime()).integer(node.getFrameCount());
            for (int i = 0; i < node.getNumChildren(); ++i)
                line.real(node.getChildTime(i)).integer(node.getChildFrameCount(i));
        }),
    fieldsOf<tbBillboard>([](Line& line, auto& node)
                          { line.integer(node.getMode()).vector(*node.getAxis()).vector(*node.getXYZ()); }),
    fieldsOf<tbFence>([](Line& line, auto& fence) { line.integer(fence.getMode()); }),
    fieldsOf<tbSphereFence>(
        [](Line& line, auto& fence)
        { line.vector(*fence.getSphere()->getCenter()).real(fence.getSphere()->getRadius()); }),
    fieldsOf<tbBoxFence>([](Line& line, auto& fence)
                         { line.vector(*fence.getBox()->getMin()).vector(*fence.getBox()->getMax()); }),
    fieldsOf<tbEmitter>(
        [](Line& line, auto& emitter)
        {
            line.integer(emitter.isPlaying()).integer(emitter.isPositionable());
            line.integer(emitter.isDopplerEnabled()).vector(*emitter.getXYZ()).string(emitter.getWaveName());
            line.reals(emitter.getMinDistance(), emitter.getMaxDistance(), emitter.getAudioLevel());
            line.reals(emitter.getPriority(), emitter.getPitch(), emitter.getPan());
            line.integer(emitter.isLoopingEnabled());
        }),
    fieldsOf<tbTrait>([](Line& line, auto& trait)
                      { line.word("mode").integer(trait.getApplyMode()).integer(trait.isShareable()); }),
    fieldsOf<tbAudioScale>([](Line& line, auto& scale) { line.real(scale.get()); }),
    fieldsOf<tbColliderMask>([](Line& line, auto& trait) { line.hex(trait.getMask()); }),
    fieldsOf<tbColliderTarget>([](Line& line, auto& trait) { line.hex(trait.getTargets()); }),
    fieldsOf<tbCull>([](Line& line, auto& trait) { line.hex(trait.getMask()); }),
    fieldsOf<tbSort>([](Line& line, auto& trait) { line.hex(trait.getMask()); }),
    fieldsOf<tbPrune>([](Line& line, auto& trait) { line.integer(trait.isEnabled()); }),
    fieldsOf<tbTransition>([](Line& line, auto& trait)
                           { line.real(trait.getScale()).integer(trait.getMode()); }),
    fieldsOf<tbEvent>([](Line& line, auto& event) { line.integer(event.isEnabled()); }),
    fieldsOf<tbCollider>(
        [](Line& line, auto& collider)
        {
            tbVec3 position;
            tbVec3 orientation;
            collider.getXYZ(position);
            collider.getHPR(orientation);
            line.vector(position).vector(orientation);
            line.hex(collider.getColliderMask()).hex(collider.getSaveMask());
            line.integer(collider.getRayHitMode()).integer(collider.getVolumeMode());
            line.integer(collider.getVolumeHitMode()).word("rays");
            for (int i = 0; i < collider.getNumRays(); ++i)
            {
                const tbRay& ray = *collider.getLocalRay(i);
                line.vector(*ray.getOrigin()).vector(*ray.getDirection()).real(ray.getLength());
            }
            line.word("traits");
            for (int i = 0; i < collider.getNumTraits(); ++i)
                line.object(collider.getTrait(i));
        }),
};

const Lister portableListers[] = {
    fieldsOf<tbMesh>(
        [](Line& line, auto& mesh)
        {
            line.word("mesh").integer(mesh.getPrimitive());
            if (const tbVertexArray* vertices = mesh.getVertexArray())
                line.hex(vertices->getVertexType())
                    .integer(vertices->getNum())
                    .bytes(vertices->getData(), std::size_t(vertices->getNum() * vertices->getVertexSize()));
            line.word("indices");
            for (int i = 0; i < mesh.getNumIndices(); ++i)
                line.integer(mesh.getIndices()[i]);
        }),
    fieldsOf<tbMaterial>(
        [](Line& line, auto& material)
        {
            line.vector(material.getAmbient()).vector(material.getDiffuse()).vector(material.getSpecular());
            line.vector(material.getEmissive()).reals(material.getShininess(), material.getOpacity());
        }),
    fieldsOf<tbTexture>(
        [](Line& line, auto& texture)
        {
            line.string(texture.getFileName()).string(texture.getFormat());
            line.integer(texture.getWrapS()).integer(texture.getWrapT()).integer(texture.getFilter());
            line.integer(texture.getWidth()).integer(texture.getHeight());
            line.bytes(texture.getImage(), texture.getImageSize());
        }),
    fieldsOf<tbBlend>(
        [](Line& line, auto& blend) {
            line.integer(blend.isEnabled())
                .integer(blend.getSourceFactor())
                .integer(blend.getDestinationFactor());
        }),
    fieldsOf<tbFaceCull>([](Line& line, auto& cull) { line.integer(cull.getFace()); }),
    fieldsOf<tbMotionAction>(
        [](Line& line, auto& action) {
            line.word("motion").real(action.getSpeed()).integer(action.isPaused()).object(action.getTarget());
        }),
    fieldsOf<tbPathAction>(
        [](Line& line, auto& action)
        {
            const tbSpline& spline = action.getSpline();
            line.word("path").integer(spline.getType()).integer(spline.isClosed());
            for (int i = 0; i < spline.getNumPoints(); ++i)
                line.vector(spline.getPoint(i));
            line.real(action.getDuration()).integer(int(action.getExtrapolation()));
            line.integer(action.isEven()).integer(action.isOriented());
        }),
    fieldsOf<tbKeyFrameAction>(
        [](Line& line, auto& action)
        {
            listTable(line, "positions", action.getPositions(), 3);
            listTable(line, "rotations", action.getRotations(), 4);
            listTable(line, "scales", action.getScales(), 3);
        }),
    fieldsOf<FileNode>(
        [](Line& line, auto& node)
        {
            line.integer(node.value).real(node.ratio);
            if (node.array)
                line.word("array")
                    .integer(node.array->getType())
                    .integer(node.array->getNum())
                    .bytes(node.array->getData(),
                           std::size_t(node.array->getNum() * node.array->getElemSize()));
            if (!node.children.empty())
                listObjects(line.word("children"), node.children);
        }),
};

// The lines of everything that the numbered objects lead to.
std::vector<std::string> listAll(std::unordered_map<const tbBase*, int>& numbers,
                                 std::vector<const tbBase*>& objects)
{
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < objects.size(); ++i)
    {
        Line line(numbers, objects);
        line.text = "#" + std::to_string(i) + " " + objects[i]->getType()->getName();
        for (const Lister& list : kernelListers)
            list(line, objects[i]);
        for (const Lister& list : portableListers)
            list(line, objects[i]);
        lines.push_back(std::move(line.text));
    }
    return lines;
}

std::string shortened(const std::string& line)
{
    constexpr std::size_t MOST_CHARACTERS = 300;
    if (line.size() <= MOST_CHARACTERS)
        return line;
    const std::uint32_t sum = checksum(reinterpret_cast<const unsigned char*>(line.data()), line.size());
    char end[80];
    std::snprintf(end, sizeof end, "... %zu characters, sum %08x", line.size(), unsigned(sum));
    return line.substr(0, MOST_CHARACTERS) + end;
}
} // namespace

std::string listGraph(const tbBase* root)
{
    std::unordered_map<const tbBase*, int> numbers{{root, 0}};
    std::vector<const tbBase*> objects{root};
    std::string text;
    for (const std::string& line : listAll(numbers, objects))
        text += line + "\n";
    return text;
}

std::string listShortly(const std::vector<tbRef<tbBase>>& roots)
{
    constexpr std::size_t MOST_LINES = 12;
    std::unordered_map<const tbBase*, int> numbers;
    std::vector<const tbBase*> objects;
    Line heads(numbers, objects);
    heads.text = "roots";
    for (const tbRef<tbBase>& root : roots)
        heads.object(root.get());
    const std::vector<std::string> lines = listAll(numbers, objects);
    std::string text = shortened(heads.text) + "\n";
    for (std::size_t i = 0; i < std::min(lines.size(), MOST_LINES); ++i)
        text += shortened(lines[i]) + "\n";
    if (lines.size() > MOST_LINES)
        text += "and " + std::to_string(lines.size() - MOST_LINES) + " more\n";
    return text;
}
} // namespace tbtest
