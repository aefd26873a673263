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

void list(Line& line, const tbBase& base)
{
    line.string(base.getName()).integer(base.isDynamic());
    if (base.getAttribList() && base.getAttribList()->getNum() > 0)
    {
        line.word("attributes");
        for (const tbBase* attribute : *base.getAttribList())
            line.object(attribute);
    }
}

void list(Line& line, const tbGroup& group)
{
    line.word("flags").hex(group.getTravFlags()).integer(group.getNodeFlags());
    if (group.getNumChildren() > 0)
    {
        line.word("children");
        for (const tbGroup* child : group.getChildren())
            line.object(child);
    }
}

void list(Line& line, const tbTransform& transform)
{
    line.word("matrix").hex(transform.getMatrix()->getType());
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 4; ++k)
            line.real(double((*transform.getMatrix())[i][k]));
}

void list(Line& line, const tbModel& model)
{
    line.string(model.getFileName()).integer(model.isEnabled()).hex(model.getColliderMask());
}

void list(Line& line, const tbStyle& style)
{
    line.word("traits");
    for (int i = 0; i < style.getNumVisualTraits(); ++i)
        line.object(style.getVisualTrait(i));
    for (int i = 0; i < style.getNumAudioTraits(); ++i)
        line.object(style.getAudioTrait(i));
    for (int i = 0; i < style.getNumTravTraits(); ++i)
        line.object(style.getTravTrait(i));
}

void list(Line& line, const tbSwitch& node)
{
    line.word("states");
    for (int i = 0; i < node.getNumChildren(); ++i)
        line.integer(node.isActive(i));
    line.integer(node.isTransitionEnabled()).integer(node.isInTransition());
    line.reals(node.getTransitionFraction(), node.getTransitionTime());
}

void list(Line& line, const tbRangeSwitch& node)
{
    line.word("ranges");
    for (int i = 0; i < node.getNumChildren(); ++i)
        line.reals(node.getRange(i), node.getTransition(i));
    line.integer(node.isCenterFixed()).vector(*node.getCenter()).integer(node.isTransitionEnabled());
}

void list(Line& line, const tbAutoSwitch& node)
{
    line.word("iterator").integer(node.isEnabled()).integer(node.isPaused());
    line.integer(node.getMode()).integer(node.getDirection()).integer(node.getCycle());
    line.real(double(node.getTime())).integer(node.getFrameCount());
    for (int i = 0; i < node.getNumChildren(); ++i)
        line.real(double(node.getChildTime(i))).integer(node.getChildFrameCount(i));
}

void list(Line& line, const tbBillboard& node)
{
    line.integer(node.getMode()).vector(*node.getAxis()).vector(*node.getXYZ());
}

void list(Line& line, const tbFence& fence)
{
    line.integer(fence.getMode());
}

void list(Line& line, const tbSphereFence& fence)
{
    const tbSphere& sphere = *fence.getSphere();
    line.vector(*sphere.getCenter()).real(double(sphere.getRadius()));
}

void list(Line& line, const tbBoxFence& fence)
{
    const tbBox& box = *fence.getBox();
    line.vector(*box.getMin()).vector(*box.getMax());
}

void list(Line& line, const tbEmitter& emitter)
{
    line.integer(emitter.isPlaying()).integer(emitter.isPositionable()).integer(emitter.isDopplerEnabled());
    line.vector(*emitter.getXYZ()).string(emitter.getWaveName());
    line.reals(emitter.getMinDistance(), emitter.getMaxDistance(), emitter.getAudioLevel());
    line.reals(emitter.getPriority(), emitter.getPitch(), emitter.getPan());
    line.integer(emitter.isLoopingEnabled());
}

void list(Line& line, const tbTrait& trait)
{
    line.word("mode").integer(trait.getApplyMode()).integer(trait.isShareable());
}

void list(Line& line, const tbAudioScale& scale)
{
    line.real(double(scale.get()));
}

void list(Line& line, const tbColliderMask& trait)
{
    line.hex(trait.getMask());
}

void list(Line& line, const tbColliderTarget& trait)
{
    line.hex(trait.getTargets());
}

void list(Line& line, const tbCull& trait)
{
    line.hex(trait.getMask());
}

void list(Line& line, const tbSort& trait)
{
    line.hex(trait.getMask());
}

void list(Line& line, const tbPrune& trait)
{
    line.integer(trait.isEnabled());
}

void list(Line& line, const tbTransition& trait)
{
    line.real(double(trait.getScale())).integer(trait.getMode());
}

void list(Line& line, const tbEvent& event)
{
    line.integer(event.isEnabled());
}

void list(Line& line, const tbCollider& collider)
{
    tbVec3 position;
    tbVec3 orientation;
    collider.getXYZ(position);
    collider.getHPR(orientation);
    line.vector(position).vector(orientation).hex(collider.getColliderMask()).hex(collider.getSaveMask());
    line.integer(collider.getRayHitMode())
        .integer(collider.getVolumeMode())
        .integer(collider.getVolumeHitMode());
    line.word("rays");
    for (int i = 0; i < collider.getNumRays(); ++i)
    {
        const tbRay& ray = *collider.getLocalRay(i);
        line.vector(*ray.getOrigin()).vector(*ray.getDirection()).real(double(ray.getLength()));
    }
    line.word("traits");
    for (int i = 0; i < collider.getNumTraits(); ++i)
        line.object(collider.getTrait(i));
}

void list(Line& line, const tbMesh& mesh)
{
    line.word("mesh").integer(mesh.getPrimitive());
    if (const tbVertexArray* vertices = mesh.getVertexArray())
    {
        line.hex(vertices->getVertexType()).integer(vertices->getNum());
        line.bytes(vertices->getData(), std::size_t(vertices->getNum() * vertices->getVertexSize()));
    }
    line.word("indices");
    for (int i = 0; i < mesh.getNumIndices(); ++i)
        line.integer(mesh.getIndices()[i]);
}

void list(Line& line, const tbMaterial& material)
{
    line.vector(material.getAmbient()).vector(material.getDiffuse()).vector(material.getSpecular());
    line.vector(material.getEmissive()).reals(material.getShininess(), material.getOpacity());
}

void list(Line& line, const tbTexture& texture)
{
    line.string(texture.getFileName()).string(texture.getFormat());
    line.integer(texture.getWrapS()).integer(texture.getWrapT()).integer(texture.getFilter());
    line.integer(texture.getWidth()).integer(texture.getHeight());
    line.bytes(texture.getImage(), texture.getImageSize());
}

void list(Line& line, const tbBlend& blend)
{
    line.integer(blend.isEnabled()).integer(blend.getSourceFactor()).integer(blend.getDestinationFactor());
}

void list(Line& line, const tbFaceCull& cull)
{
    line.integer(cull.getFace());
}

void list(Line& line, const tbMotionAction& action)
{
    line.word("motion").real(double(action.getSpeed())).integer(action.isPaused()).object(action.getTarget());
}

void list(Line& line, const tbPathAction& action)
{
    const tbSpline& spline = action.getSpline();
    line.word("path").integer(spline.getType()).integer(spline.isClosed());
    for (int i = 0; i < spline.getNumPoints(); ++i)
        line.vector(spline.getPoint(i));
    line.real(double(action.getDuration())).integer(int(action.getExtrapolation()));
    line.integer(action.isEven()).integer(action.isOriented());
}

template <class Table>
void listTable(Line& line, const char* name, const Table& table, int numFloats)
{
    line.word(name).integer(int(table.getInterpolation())).integer(int(table.getExtrapolation()));
    for (int i = 0; i < table.getNumKeys(); ++i)
    {
        line.real(double(table.getKeyTime(i)));
        for (int k = 0; k < numFloats; ++k)
            line.real(double(table.getKeyValue(i)[k]));
    }
}

void list(Line& line, const tbKeyFrameAction& action)
{
    listTable(line, "positions", action.getPositions(), 3);
    listTable(line, "rotations", action.getRotations(), 4);
    listTable(line, "scales", action.getScales(), 3);
}

void list(Line& line, const FileNode& node)
{
    line.integer(node.value).real(node.ratio);
    if (node.array)
    {
        line.word("array").integer(node.array->getType()).integer(node.array->getNum());
        line.bytes(node.array->getData(), std::size_t(node.array->getNum() * node.array->getElemSize()));
    }
    if (!node.children.empty())
        line.word("children");
    for (const tbRef<tbBase>& child : node.children)
        line.object(child.get());
}

template <class Class>
void listIf(Line& line, const tbBase* object)
{
    if (object->isOfType(Class::getClassType()))
        list(line, static_cast<const Class&>(*object));
}

template <class... Classes>
void listAs(Line& line, const tbBase* object)
{
    (listIf<Classes>(line, object), ...);
}

// Parents before children, as the records are laid out.
void listObject(Line& line, const tbBase* object)
{
    line.word(object->getType()->getName());
    listAs<tbBase, tbGroup, tbTransform, tbModel, tbStyle, tbSwitch, tbRangeSwitch, tbAutoSwitch, tbBillboard,
           tbFence, tbSphereFence, tbBoxFence, tbEmitter, tbTrait, tbAudioScale, tbColliderMask,
           tbColliderTarget, tbCull, tbSort, tbPrune, tbTransition, tbEvent, tbCollider, tbMesh, tbMaterial,
           tbTexture, tbBlend, tbFaceCull, tbMotionAction, tbPathAction, tbKeyFrameAction, FileNode>(line,
                                                                                                     object);
}

// The lines of everything that the numbered objects lead to.
std::vector<std::string> listAll(std::unordered_map<const tbBase*, int>& numbers,
                                 std::vector<const tbBase*>& objects)
{
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < objects.size(); ++i)
    {
        Line line(numbers, objects);
        line.text = "#" + std::to_string(i);
        listObject(line, objects[i]);
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

std::string listShortly(const std::vector<tbBase*>& roots)
{
    constexpr std::size_t MOST_LINES = 12;
    std::unordered_map<const tbBase*, int> numbers;
    std::vector<const tbBase*> objects;
    Line heads(numbers, objects);
    heads.text = "roots";
    for (const tbBase* root : roots)
        heads.object(root);
    const std::vector<std::string> lines = listAll(numbers, objects);
    std::string text = shortened(heads.text) + "\n";
    for (std::size_t i = 0; i < std::min(lines.size(), MOST_LINES); ++i)
        text += shortened(lines[i]) + "\n";
    if (lines.size() > MOST_LINES)
        text += "and " + std::to_string(lines.size() - MOST_LINES) + " more\n";
    return text;
}
} // namespace tbtest
