// The inventory of what stands in files: every class with the description of its record. Each description says what
// the class's write() writes, in the same order, beginning with what it takes over from another class.
#include "RecordForm.h"

#include <algorithm>
#include <array>

namespace native
{

namespace
{

using Type = RecordForm::Type;

constexpr int MOST_PLUGINS = 256;

constexpr ValueName objectFlags[] = {{1, "dynamic"}};
constexpr ValueName travFlags[] = {{0x0001, "update"},    {0x0002, "added"},  {0x0004, "removed"},
                                   {0x0008, "shared"},    {0x0010, "matrix"}, {0x0020, "fence"},
                                   {0x0040, "geometry"},  {0x0080, "audio"},  {0x0200, "hasGeometry"},
                                   {0x0400, "hasEmitter"}};
constexpr ValueName nodeFlags[] = {{0, "clone"}, {1, "share"}, {2, "copy"}};
constexpr ValueName traitModes[] = {{0, "off"}, {1, "on"}, {2, "override"}, {3, "force"}};
constexpr ValueName transitionModes[] = {{0, "none"}, {1, "in"}, {2, "out"}};
constexpr ValueName fenceModes[] = {{0, "auto"}, {1, "fixed"}};
constexpr ValueName switchStates[] = {{0, "off"}, {1, "on"}, {2, "fading"}};
constexpr ValueName switchFlags[] = {{1, "transitions"}, {2, "running"}};
constexpr ValueName billboardModes[] = {{0, "axis"}, {1, "cameraUp"}, {2, "worldUp"}, {3, "fixedUp"}};
constexpr ValueName matrixTypes[] = {{1, "identity"}, {2, "rotation"}, {4, "translation"},
                                     {8, "uniscale"}, {16, "scale"},   {32, "projection"}};
constexpr ValueName emitterFlags[] = {{1, "updated"}, {4, "playing"}, {8, "positionable"}, {16, "doppler"}};
constexpr ValueName targets[] = {{0x10000, "transforms"}, {0x20000, "fences"}, {0x40000, "geometry"}};
constexpr ValueName saves[] = {{1, "path"}, {2, "namedPath"}, {4, "matrix"}, {8, "invertMatrix"}};
constexpr ValueName rayHitModes[] = {{0, "none"}, {1, "nearest"}, {2, "farthest"}, {3, "all"}};
constexpr ValueName volumeModes[] = {{0, "none"}, {1, "sphere"}, {2, "box"}, {3, "user"}};
constexpr ValueName volumeHitModes[] = {{0, "none"}, {1, "first"}, {2, "all"}};
constexpr ValueName iteratorCycles[] = {{0, "stop"}, {1, "wrap"}, {2, "reverse"}};
constexpr ValueName iteratorModes[] = {{0, "time"}, {1, "frames"}};
constexpr ValueName iteratorDirections[] = {{0, "forward"}, {1, "backward"}};
constexpr ValueName blendFactors[] = {{0, "zero"},     {1, "one"},
                                      {2, "srcColor"}, {3, "oneMinusSrcColor"},
                                      {4, "dstColor"}, {5, "oneMinusDstColor"},
                                      {6, "srcAlpha"}, {7, "oneMinusSrcAlpha"},
                                      {8, "dstAlpha"}, {9, "oneMinusDstAlpha"}};
constexpr ValueName faces[] = {{0, "none"}, {1, "back"}, {2, "front"}, {3, "both"}};
constexpr ValueName primitives[] = {{0, "points"}, {1, "lines"}, {2, "triangles"}};
constexpr ValueName wraps[] = {{0, "repeat"}, {1, "clamp"}, {2, "mirror"}};
constexpr ValueName filters[] = {{0, "nearest"}, {1, "linear"}, {2, "mipmap"}};
constexpr ValueName splineTypes[] = {{0, "linear"}, {1, "catmullRom"}, {2, "hermite"}, {3, "bezier"}};
constexpr ValueName interpolations[] = {{0, "step"}, {1, "linear"}, {2, "catmullRom"}};
constexpr ValueName extrapolations[] = {{0, "clamp"}, {1, "loop"}, {2, "pingPong"}};
constexpr ValueName vertexTypes[] = {
    {0x01, "position"},   {0x02, "normal"},     {0x04, "color"}, {0x08, "texCoords1"}, {0x10, "texCoords2"},
    {0x20, "texCoords3"}, {0x40, "texCoords4"}, {0x100, "abgr"}, {0x200, "argb"},      {0x8000, "dynamic"}};
constexpr ValueName arrayTypes[] = {{0, "short"},
                                    {1, "ubyteVec3"},
                                    {2, "ubyteVec4"},
                                    {3, "int"},
                                    {4, "float"},
                                    {5, "vec2"},
                                    {6, "vec3"},
                                    {7, "vec4"},
                                    {8, "double"},
                                    {0x8000, "dynamicShort"},
                                    {0x8001, "dynamicUbyteVec3"},
                                    {0x8002, "dynamicUbyteVec4"},
                                    {0x8003, "dynamicInt"},
                                    {0x8004, "dynamicFloat"},
                                    {0x8005, "dynamicVec2"},
                                    {0x8006, "dynamicVec3"},
                                    {0x8007, "dynamicVec4"},
                                    {0x8008, "dynamicDouble"}};

Type enumeration(ValueNames names, std::uint8_t width = 4)
{
    return {FieldKind::ENUM, width, names};
}
Type flags(ValueNames names, std::uint8_t width = 4)
{
    return {FieldKind::FLAGS, width, names};
}
Type reference(const char* family)
{
    return {FieldKind::OBJECT, 4, {}, family};
}

void describeBase(RecordForm& form)
{
    form.text("name");
    form.value("flags", flags(objectFlags, 2));
    form.list("attributes", reference("tbBase"), 1);
}

void describeGroup(RecordForm& form)
{
    describeBase(form);
    form.value("travFlags", flags(travFlags, 2));
    form.value("nodeFlags", enumeration(nodeFlags, 2));
    form.list("children", reference("tbGroup"), 1);
}

void describeTransform(RecordForm& form)
{
    describeGroup(form);
    form.value("matrix.type", flags(matrixTypes));
    form.vector("matrix", 16);
}

void describeModel(RecordForm& form)
{
    describeTransform(form);
    form.text("fileName");
    form.boolean("enabled");
    form.bits("colliderMask");
}

void describeStyle(RecordForm& form)
{
    describeGroup(form);
    form.list("traits", reference("tbTrait"), 1);
}

void describeFence(RecordForm& form)
{
    describeGroup(form);
    form.value("mode", enumeration(fenceModes));
}

void describeSphereFence(RecordForm& form)
{
    describeFence(form);
    form.vector("center", 3);
    form.number("radius");
}

void describeBoxFence(RecordForm& form)
{
    describeFence(form);
    form.vector("min", 3);
    form.vector("max", 3);
}

void describeSwitch(RecordForm& form)
{
    describeGroup(form);
    form.list("states", enumeration(switchStates, 1), 1);
    form.value("switchFlags", flags(switchFlags));
    form.number("transitionFraction");
    form.number("transitionStart");
    form.number("transitionTime");
}

void describeRangeSwitch(RecordForm& form)
{
    static constexpr Column columns[] = {{"range", FieldKind::FLOAT, 4, 1, 0},
                                         {"transition", FieldKind::FLOAT, 4, 1, 4},
                                         {"inverseWidth", FieldKind::FLOAT, 4, 1, 8}};
    describeSwitch(form);
    form.table("ranges", columns);
    form.boolean("centerFixed");
    form.vector("center", 3);
    form.boolean("transitionEnabled");
}

void describeAutoSwitch(RecordForm& form)
{
    describeSwitch(form);
    form.boolean("enabled");
    form.value("iterator.paused", {FieldKind::BOOL, 1});
    form.value("iterator.cycle", enumeration(iteratorCycles, 1));
    form.value("iterator.mode", enumeration(iteratorModes, 1));
    form.value("iterator.direction", enumeration(iteratorDirections, 1));
    form.integer("iterator.currentItem");
    form.integer("iterator.step");
    form.number("iterator.totalTime");
    form.number("iterator.itemTime");
    form.list("iterator.itemTimes", {FieldKind::FLOAT}, 1);
    form.integer("iterator.totalFrames");
    form.integer("iterator.itemFrames");
    form.list("iterator.itemFrameCounts", {FieldKind::INT}, 1);
    form.integer("iterator.numItems");
}

void describeBillboard(RecordForm& form)
{
    describeGroup(form);
    form.value("mode", enumeration(billboardModes));
    form.vector("axis", 3);
    form.vector("position", 3);
}

void describeEmitter(RecordForm& form)
{
    describeGroup(form);
    form.value("emitterFlags", flags(emitterFlags));
    form.vector("position", 3);
    form.text("waveName");
    form.number("minDistance");
    form.number("maxDistance");
    form.number("audioLevel");
    form.number("priority");
    form.number("pitch");
    form.number("pan");
    form.boolean("looping");
}

void describeTrait(RecordForm& form)
{
    describeBase(form);
    form.value("mode", enumeration(traitModes, 2));
    form.value("shareable", {FieldKind::BOOL, 2});
}

void describeAudioScale(RecordForm& form)
{
    describeTrait(form);
    form.number("scale");
}

void describeMask(RecordForm& form)
{
    describeTrait(form);
    form.bits("mask");
}

void describeColliderTarget(RecordForm& form)
{
    describeTrait(form);
    form.value("targets", flags(targets));
}

void describePrune(RecordForm& form)
{
    describeTrait(form);
    form.boolean("enabled");
}

void describeTransition(RecordForm& form)
{
    describeTrait(form);
    form.number("scale");
    form.value("transition", enumeration(transitionModes));
}

void describeCollider(RecordForm& form)
{
    static constexpr Column columns[] = {{"origin", FieldKind::FLOAT, 4, 3, 0},
                                         {"direction", FieldKind::FLOAT, 4, 3, 12},
                                         {"length", FieldKind::FLOAT, 4, 1, 24}};
    describeBase(form);
    form.vector("position", 3);
    form.vector("orientation", 3);
    form.bits("colliderMask");
    form.value("saveMask", flags(saves));
    form.value("rayHitMode", enumeration(rayHitModes));
    form.value("volumeMode", enumeration(volumeModes));
    form.value("volumeHitMode", enumeration(volumeHitModes));
    form.table("rays", columns);
    form.list("traits", reference("tbTravTrait"), 1);
}

void describeEvent(RecordForm& form)
{
    describeBase(form);
    form.boolean("enabled");
}

void describeWindow(RecordForm& form)
{
    describeBase(form);
    form.boolean("enabled");
}

void describeMesh(RecordForm& form)
{
    describeGroup(form);
    form.value("primitive", enumeration(primitives));
    form.value("vertices", {FieldKind::VERTEX_ARRAY});
    form.list("indices", {FieldKind::INT}, 1);
}

void describeMaterial(RecordForm& form)
{
    describeTrait(form);
    form.vector("ambient", 3);
    form.vector("diffuse", 3);
    form.vector("specular", 3);
    form.vector("emissive", 3);
    form.number("shininess");
    form.number("opacity");
}

void describeTexture(RecordForm& form)
{
    describeTrait(form);
    form.value("wrapS", enumeration(wraps));
    form.value("wrapT", enumeration(wraps));
    form.value("filter", enumeration(filters));
    form.text("fileName");
    form.integer("width");
    form.integer("height");
    form.fixedText("format", 9);
    form.list("image", {FieldKind::BYTES, 1}, 1);
}

void describeBlend(RecordForm& form)
{
    describeTrait(form);
    form.boolean("enabled");
    form.value("source", enumeration(blendFactors));
    form.value("destination", enumeration(blendFactors));
}

void describeFaceCull(RecordForm& form)
{
    describeTrait(form);
    form.value("face", enumeration(faces));
}

void describeMotionAction(RecordForm& form)
{
    describeBase(form); // action nodes leave out what groups write
    form.number("speed");
    form.number("time");
    form.boolean("paused");
    if (form.boolean("hasTarget") != 0)
        form.value("target", reference("tbTransform"));
}

void describePathAction(RecordForm& form)
{
    describeMotionAction(form);
    form.value("spline.type", enumeration(splineTypes));
    form.boolean("spline.closed");
    form.list("spline.points", {FieldKind::FLOAT}, 3);
    form.number("duration");
    form.value("extrapolation", enumeration(extrapolations));
    form.boolean("even");
    form.boolean("oriented");
}

struct KeyTable
{
    const char* interpolation;
    const char* extrapolation;
    const char* keys;
    std::array<Column, 2> columns;
};

void describeKeys(RecordForm& form, const KeyTable& table)
{
    form.value(table.interpolation, enumeration(interpolations));
    form.value(table.extrapolation, enumeration(extrapolations));
    form.table(table.keys, table.columns);
}

void describeKeyFrameAction(RecordForm& form)
{
    static constexpr Column time = {"time", FieldKind::FLOAT, 4, 1, 0};
    static constexpr KeyTable tables[] = {
        {"positions.interpolation",
         "positions.extrapolation",
         "positions.keys",
         {time, {"position", FieldKind::FLOAT, 4, 3, 4}}},
        {"rotations.interpolation",
         "rotations.extrapolation",
         "rotations.keys",
         {time, {"rotation", FieldKind::FLOAT, 4, 4, 4}}},
        {"scales.interpolation",
         "scales.extrapolation",
         "scales.keys",
         {time, {"scale", FieldKind::FLOAT, 4, 3, 4}}},
    };
    describeMotionAction(form);
    for (const KeyTable& table : tables)
        describeKeys(form, table);
}

void describeArray(RecordForm& form)
{
    static constexpr struct
    {
        FieldKind kind;
        std::uint8_t width;
        int perItem;
    } elements[] = {{FieldKind::INT, 2, 1},   {FieldKind::FLAGS, 1, 3}, {FieldKind::FLAGS, 1, 4},
                    {FieldKind::INT, 4, 1},   {FieldKind::FLOAT, 4, 1}, {FieldKind::FLOAT, 4, 2},
                    {FieldKind::FLOAT, 4, 3}, {FieldKind::FLOAT, 4, 4}, {FieldKind::DOUBLE, 8, 1}};
    constexpr std::uint32_t TYPE_MASK = 0xFFF;
    const auto type = std::uint32_t(form.value("type", enumeration(arrayTypes, 2))) & TYPE_MASK;
    if (type >= std::size(elements))
        return form.fail("an array is of one of the nine known types");
    const auto& element = elements[type];
    form.list("elements", {element.kind, element.width}, element.perItem);
}

void describeVertexArray(RecordForm& form)
{
    const auto type = std::uint32_t(form.value("type", flags(vertexTypes, 2)));
    std::array<Column, 7> columns;
    std::size_t number = 0;
    std::uint8_t offset = 0;
    const auto add = [&](const char* name, FieldKind kind, std::uint8_t count)
    {
        columns[number++] = {name, kind, 4, count, offset};
        offset = std::uint8_t(offset + 4 * count);
    };
    add("position", FieldKind::FLOAT, 3);
    if ((type & 2) != 0)
        add("normal", FieldKind::FLOAT, 3);
    if ((type & 4) != 0)
        add("color", FieldKind::FLAGS, 1);
    // Exactly one of these bits counts the sets; any other pattern means none.
    static constexpr const char* names[] = {"texCoords0", "texCoords1", "texCoords2", "texCoords3"};
    const std::uint32_t code = (type >> 3) & 0xF;
    for (std::uint32_t set = 0; set < 4; ++set)
        if (code == 1u << set)
            for (std::uint32_t i = 0; i <= set; ++i)
                add(names[i], FieldKind::FLOAT, 2);
    form.table("vertices", std::span<const Column>(columns).first(number));
}

void describePlugIns(RecordForm& form)
{
    const int number = form.integer("number");
    if (number > MOST_PLUGINS)
        return form.fail("no file lists more than 256 plug-ins");
    for (int i = 0; i < number && !form.hasStopped(); ++i)
    {
        form.beginItem(i);
        form.text("company");
        form.text("plugIn");
        form.text("buildDate");
        form.text("module");
        form.integer("major");
        form.integer("minor");
        form.integer("build");
    }
    form.beginItem(-1);
}

using Describe = void (*)(RecordForm&);

constexpr ClassInfo classes[] = {
    {"tbBase", nullptr, ClassInfo::OBJECT},
    {"tbEvent", "tbBase", ClassInfo::OBJECT},
    {"tbLock", "tbBase", ClassInfo::SERVICE},
    {"tbQueue", "tbBase", ClassInfo::SERVICE},
    {"tbThread", "tbBase", ClassInfo::SERVICE},
    {"tbSemaphore", "tbBase", ClassInfo::SERVICE},
    {"tbMouse", "tbQueue", ClassInfo::SERVICE},
    {"tbKeyboard", "tbQueue", ClassInfo::SERVICE},
    {"tbWindow", "tbBase", ClassInfo::SERVICE},
    {"tbNullWindow", "tbWindow", ClassInfo::SERVICE},
    {"tbCamera", "tbBase", ClassInfo::ABSTRACT},
    {"tbNullCamera", "tbCamera", ClassInfo::OBJECT},
    {"tbListener", "tbBase", ClassInfo::ABSTRACT},
    {"tbNullListener", "tbListener", ClassInfo::OBJECT},
    {"tbStats", "tbBase", ClassInfo::OBJECT},
    {"tbTraverser", "tbBase", ClassInfo::OBJECT},
    {"tbTravContext", "tbBase", ClassInfo::OBJECT},
    {"tbTraitStack", "tbBase", ClassInfo::OBJECT},
    {"tbCollider", "tbBase", ClassInfo::OBJECT},
    {"tbAction", "tbBase", ClassInfo::ABSTRACT},
    {"tbFlushThread", "tbAction", ClassInfo::SERVICE},
    {"tbGroup", "tbBase", ClassInfo::OBJECT},
    {"tbTransform", "tbGroup", ClassInfo::OBJECT},
    {"tbModel", "tbTransform", ClassInfo::OBJECT},
    {"tbStyle", "tbGroup", ClassInfo::OBJECT},
    {"tbScene", "tbStyle", ClassInfo::OBJECT},
    {"tbFence", "tbGroup", ClassInfo::ABSTRACT},
    {"tbSphereFence", "tbFence", ClassInfo::OBJECT},
    {"tbBoxFence", "tbFence", ClassInfo::OBJECT},
    {"tbSwitch", "tbGroup", ClassInfo::OBJECT},
    {"tbRangeSwitch", "tbSwitch", ClassInfo::OBJECT},
    {"tbAutoSwitch", "tbSwitch", ClassInfo::OBJECT},
    {"tbBillboard", "tbGroup", ClassInfo::OBJECT},
    {"tbEmitter", "tbGroup", ClassInfo::OBJECT},
    {"tbGeometry", "tbGroup", ClassInfo::ABSTRACT},
    {"tbMesh", "tbGeometry", ClassInfo::OBJECT},
    {"tbActionNode", "tbGroup", ClassInfo::ABSTRACT},
    {"tbMotionAction", "tbActionNode", ClassInfo::ABSTRACT},
    {"tbPathAction", "tbMotionAction", ClassInfo::OBJECT},
    {"tbKeyFrameAction", "tbMotionAction", ClassInfo::OBJECT},
    {"tbTrait", "tbBase", ClassInfo::ABSTRACT},
    {"tbVisualTrait", "tbTrait", ClassInfo::ABSTRACT},
    {"tbMaterial", "tbVisualTrait", ClassInfo::OBJECT},
    {"tbTexture", "tbVisualTrait", ClassInfo::OBJECT},
    {"tbBlend", "tbVisualTrait", ClassInfo::OBJECT},
    {"tbFaceCull", "tbVisualTrait", ClassInfo::OBJECT},
    {"tbAudioTrait", "tbTrait", ClassInfo::ABSTRACT},
    {"tbAudioLevelScale", "tbAudioTrait", ClassInfo::OBJECT},
    {"tbAudioPriorityScale", "tbAudioTrait", ClassInfo::OBJECT},
    {"tbTravTrait", "tbTrait", ClassInfo::ABSTRACT},
    {"tbColliderMask", "tbTravTrait", ClassInfo::OBJECT},
    {"tbColliderTarget", "tbTravTrait", ClassInfo::OBJECT},
    {"tbCull", "tbTravTrait", ClassInfo::OBJECT},
    {"tbSort", "tbTravTrait", ClassInfo::OBJECT},
    {"tbPrune", "tbTravTrait", ClassInfo::OBJECT},
    {"tbTransition", "tbTravTrait", ClassInfo::OBJECT},
    {"tbArray", nullptr, ClassInfo::DATA},
    {"tbVertexArray", nullptr, ClassInfo::DATA},
    {"tbPlugIns", nullptr, ClassInfo::DATA},
};

// Classes that write a record of their own; the others write their parent's.
constexpr struct
{
    std::string_view name;
    Describe describe;
} descriptions[] = {
    {"tbBase", describeBase},
    {"tbEvent", describeEvent},
    {"tbWindow", describeWindow},
    {"tbCollider", describeCollider},
    {"tbGroup", describeGroup},
    {"tbTransform", describeTransform},
    {"tbModel", describeModel},
    {"tbStyle", describeStyle},
    {"tbFence", describeFence},
    {"tbSphereFence", describeSphereFence},
    {"tbBoxFence", describeBoxFence},
    {"tbSwitch", describeSwitch},
    {"tbRangeSwitch", describeRangeSwitch},
    {"tbAutoSwitch", describeAutoSwitch},
    {"tbBillboard", describeBillboard},
    {"tbEmitter", describeEmitter},
    {"tbMesh", describeMesh},
    {"tbActionNode", describeBase},
    {"tbMotionAction", describeMotionAction},
    {"tbPathAction", describePathAction},
    {"tbKeyFrameAction", describeKeyFrameAction},
    {"tbTrait", describeTrait},
    {"tbMaterial", describeMaterial},
    {"tbTexture", describeTexture},
    {"tbBlend", describeBlend},
    {"tbFaceCull", describeFaceCull},
    {"tbAudioLevelScale", describeAudioScale},
    {"tbAudioPriorityScale", describeAudioScale},
    {"tbColliderMask", describeMask},
    {"tbColliderTarget", describeColliderTarget},
    {"tbCull", describeMask},
    {"tbSort", describeMask},
    {"tbPrune", describePrune},
    {"tbTransition", describeTransition},
    {"tbArray", describeArray},
    {"tbVertexArray", describeVertexArray},
    {"tbPlugIns", describePlugIns},
};

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool less(std::string_view a, std::string_view b)
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return lower(x) < lower(y); });
}

struct Known
{
    const ClassInfo* info = nullptr;
    const Known* parent = nullptr;
    Describe describe = nullptr;
};

// All classes, in the order of their names.
class Inventory
{
public:
    Inventory()
    {
        for (std::size_t i = 0; i < known.size(); ++i)
            known[i].info = &classes[i];
        std::sort(known.begin(), known.end(),
                  [](const Known& a, const Known& b) { return less(a.info->name, b.info->name); });
        for (const auto& description : descriptions)
            at(description.name)->describe = description.describe;
        for (const ClassInfo& info : classes) // parents first
        {
            Known* entry = at(info.name);
            entry->parent = info.parent ? at(info.parent) : nullptr;
            if (!entry->describe && entry->parent)
                entry->describe = entry->parent->describe;
        }
    }

    const Known* find(std::string_view name) const
    {
        const auto place =
            std::lower_bound(known.begin(), known.end(), name,
                             [](const Known& a, std::string_view b) { return less(a.info->name, b); });
        return place != known.end() && !less(name, place->info->name) ? &*place : nullptr;
    }

private:
    Known* at(std::string_view name) { return const_cast<Known*>(find(name)); }

    std::array<Known, std::size(classes)> known;
};

const Known* findKnown(std::string_view name)
{
    static const Inventory inventory;
    return inventory.find(name);
}

} // namespace

std::span<const ClassInfo> knownClasses()
{
    return classes;
}

const ClassInfo* findClass(std::string_view name)
{
    const Known* known = findKnown(name);
    return known ? known->info : nullptr;
}

bool descendsFrom(std::string_view name, std::string_view ancestor)
{
    const Known* wanted = findKnown(ancestor);
    for (const Known* known = findKnown(name); known; known = known->parent)
        if (known == wanted)
            return true;
    return false;
}

bool describeRecord(std::string_view className, RecordForm& form)
{
    const Known* known = findKnown(className);
    if (!known)
        return false;
    known->describe(form);
    return true;
}

} // namespace native
