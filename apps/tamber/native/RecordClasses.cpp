// The inventory of the classes that files name.
#include "FoldedName.h"
#include "RecordDescriptions.h"

#include <algorithm>
#include <array>

namespace native
{

namespace
{

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
    {"tbTravContext", "tbBase", ClassInfo::SERVICE},
    {"tbTraitStack", "tbBase", ClassInfo::SERVICE},
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

struct Known
{
    const ClassInfo* info = nullptr;
    const Known* parent = nullptr;
    void (*describe)(RecordForm&) = nullptr;
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
                  [](const Known& a, const Known& b)
                  { return compareFolded(a.info->name, b.info->name) < 0; });
        for (const RecordDescription& description : recordDescriptions())
            at(description.className)->describe = description.describe;
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
        const auto place = std::lower_bound(known.begin(), known.end(), name,
                                            [](const Known& a, std::string_view b)
                                            { return compareFolded(a.info->name, b) < 0; });
        return place != known.end() && compareFolded(name, place->info->name) == 0 ? &*place : nullptr;
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
