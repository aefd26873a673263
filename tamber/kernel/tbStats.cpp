#include <tamber/kernel/tbStats.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include <algorithm>
#include <limits>

TB_DEFINE_CLASS(tbStats, tbBase)

tbStats::tbStats(tbTraitStack::STACK_TYPES countedKinds) : kinds(countedKinds)
{
    initInstance();
    reset();
}

tbStats::tbStats(const tbStats& other) : tbBase(other), kinds(other.kinds)
{
    initInstance();
    assign(other);
}

tbStats& tbStats::operator=(const tbStats& other)
{
    if (this != &other)
    {
        tbBase::operator=(other);
        assign(other);
    }
    return *this;
}

tbStats::~tbStats()
{
    deleteInstance();
    for (Counters* counters : {&visual, &audio, &trav, &group})
        tbMemory::free(counters->values);
}

tbBase* tbStats::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbStats::assign(const tbStats& other)
{
    visual.assign(other.visual);
    audio.assign(other.audio);
    trav.assign(other.trav);
    group.assign(other.group);
    totals = other.totals;
    kinds = other.kinds;
}

void tbStats::reallocArrays()
{
    if ((kinds & tbTraitStack::VISUAL_STACK) != 0)
        visual.resize(tbVisualTraitType::getNumTraitTypes());
    if ((kinds & tbTraitStack::AUDIO_STACK) != 0)
        audio.resize(tbAudioTraitType::getNumTraitTypes());
    if ((kinds & tbTraitStack::TRAV_STACK) != 0)
        trav.resize(tbTravTraitType::getNumTraitTypes());
    group.resize(tbGroupType::getNumGroupTypes());
}

void tbStats::reset()
{
    reallocArrays();
    for (Counters* counters : {&visual, &audio, &trav, &group})
        counters->clear();
    totals = Totals();
}

void tbStats::incCount(const tbVisualTrait* trait)
{
    visual.inc(trait->getType());
}

void tbStats::incCount(const tbAudioTrait* trait)
{
    audio.inc(trait->getType());
}

void tbStats::incCount(const tbTravTrait* trait)
{
    trav.inc(trait->getType());
}

void tbStats::incCount(const tbGroup* node)
{
    group.inc(node->getType());
}

int tbStats::getCount(const tbVisualTraitType* type) const
{
    return visual.get(type);
}

int tbStats::getCount(const tbAudioTraitType* type) const
{
    return audio.get(type);
}

int tbStats::getCount(const tbTravTraitType* type) const
{
    return trav.get(type);
}

int tbStats::getCount(const tbGroupType* type) const
{
    return group.get(type);
}

void tbStats::addFrame(double seconds)
{
    count(totals.frames);
    totals.updateTime += seconds;
}

void tbStats::addCollision(double seconds)
{
    count(totals.collisions);
    totals.collisionTime += seconds;
}

void tbStats::addTotal(int i, int amount)
{
    if (i >= 0 && i < NUM_TOTALS)
        totals.further[i] = std::int32_t(
            std::clamp<std::int64_t>(std::int64_t(totals.further[i]) + amount, INT32_MIN, INT32_MAX));
}

int tbStats::getTotal(int i) const
{
    return i >= 0 && i < NUM_TOTALS ? totals.further[i] : 0;
}

bool tbStats::Counters::covers(const tbType* type) const
{
    const int index = type ? type->getIndex() : -1;
    return index >= 0 && index < length;
}

void tbStats::Counters::inc(const tbType* type)
{
    if (covers(type))
        count(values[type->getIndex()]);
}

int tbStats::Counters::get(const tbType* type) const
{
    return covers(type) ? values[type->getIndex()] : 0;
}

void tbStats::Counters::resize(int numTypes)
{
    numTypes = std::min<int>(numTypes, std::numeric_limits<std::int16_t>::max());
    if (numTypes == length)
        return;
    void* block = tbMemory::realloc(values, std::size_t(std::max(numTypes, 1)) * sizeof(*values));
    if (!block)
        return;
    values = static_cast<std::int32_t*>(block);
    length = std::int16_t(numTypes);
}

void tbStats::Counters::clear()
{
    std::fill_n(values, length, 0);
}

void tbStats::Counters::assign(const Counters& other)
{
    resize(other.length);
    std::copy_n(other.values, std::min(length, other.length), values);
}
