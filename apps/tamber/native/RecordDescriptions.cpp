// What stands in files. Each description says what the class's write() writes, in the same order, beginning with what
// it takes over from another class.
#include "RecordDescriptions.h"

#include "RecordNames.h"

#include <array>

namespace native
{

namespace
{

using namespace names;
using Type = RecordForm::Type;

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

constexpr RecordDescription descriptions[] = {
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

} // namespace

std::span<const RecordDescription> recordDescriptions()
{
    return descriptions;
}

} // namespace native
